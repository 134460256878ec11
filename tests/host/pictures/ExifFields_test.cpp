#include "host/pictures/ExifFields.h"

#include <algorithm>
#include <set>

#include <OpenImageIO/tiffutils.h>
#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/files/PictureReport.h"
#include "host/formats/JpegSegments.h"
#include "host/pictures/PictureFileMetadata.h"
#include "host/pictures/PictureFileOpen.h"
#include "tests/support/host/ExifBytes.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/RawPictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

using Names = std::set<std::string>;

Names NamesOf(const std::vector<ExifFieldName>& fields) {
  Names names;
  for (const ExifFieldName& field : fields)
    names.insert(field.name);
  return names;
}

std::string Little(std::size_t value, int bytes) {
  std::string text;
  for (int shift = 0; shift < 8 * bytes; shift += 8)
    text.push_back(static_cast<char>(value >> shift & 0xff));
  return text;
}

struct Field {
  std::size_t tag;
  std::size_t type;
  std::size_t count;
  std::string value;
};

std::string Directory(std::vector<Field> fields, std::size_t at) {
  std::ranges::sort(fields, {}, &Field::tag);
  std::string entries = Little(fields.size(), 2);
  std::string values;
  for (const Field& field : fields) {
    entries += Little(field.tag, 2) + Little(field.type, 2) + Little(field.count, 4);
    const std::size_t place = at + 2 + 12 * fields.size() + 4 + values.size();
    if (field.value.size() <= 4) {
      entries += field.value + std::string(4 - field.value.size(), '\0');
    } else {
      entries += Little(place, 4);
      values += field.value + std::string(field.value.size() % 2, '\0');
    }
  }
  return entries + Little(0, 4) + values;
}

Field Filled(std::size_t tag, int type, int count) {
  const auto values = static_cast<std::size_t>(std::max(count, 1));
  std::string value;
  // Writers know how long these are.
  constexpr std::pair<std::size_t, std::string_view> kTexts[] = {{0x9003, "2020:01:02 03:04:05"},
                                                                 {0x9004, "2020:01:02 03:04:06"},
                                                                 {0x9010, "+01:00"},
                                                                 {0x9011, "+02:00"},
                                                                 {0x9012, "-03:00"},
                                                                 {0xa004, "sound001.wav"},
                                                                 {0xa420, "0123456789abcdef0123456789abcdef"}};
  for (const auto& [known, text] : kTexts) {
    if (known == tag) return {tag, TIFF_ASCII, text.size() + 1, std::string(text) + '\0'};
  }
  switch (type) {
    case TIFF_BYTE: return {tag, TIFF_BYTE, 1, "\1"};
    case TIFF_ASCII: return {tag, TIFF_ASCII, 5, std::string("text\0", 5)};
    case TIFF_SHORT:
      for (std::size_t i = 0; i < values; ++i)
        value += Little(7, 2);
      break;
    case TIFF_LONG: value = Little(70, 4); break;
    case TIFF_RATIONAL:
    case TIFF_SRATIONAL:
      for (std::size_t i = 0; i < values; ++i)
        value += Little(3, 4) + Little(2, 4);
      break;
    default: return {tag, TIFF_UNDEFINED, 4, "0230"};
  }
  return {tag, static_cast<std::size_t>(type), values, value};
}

// Every field that the picture library knows of the camera and of its place, one that it does not know, and comments.
std::string EveryField() {
  std::vector<Field> camera{{0x9999, TIFF_ASCII, 4, std::string("abc\0", 4)}, Filled(0x9286, TIFF_UNDEFINED, 4)};
  for (const auto& known : OIIO::tag_table("Exif")) {
    const auto tag = static_cast<std::size_t>(known.tifftag);
    const bool isThere = std::ranges::find(camera, tag, &Field::tag) != camera.end();
    const bool leadsOn = tag == 0x8769 || tag == 0x8825 || tag == 0x927c;
    if (tag >= 0x829a && !isThere && !leadsOn) camera.push_back(Filled(tag, known.tifftype, known.tiffcount));
  }
  std::vector<Field> place;
  for (const auto& known : OIIO::tag_table("GPS"))
    place.push_back(Filled(static_cast<std::size_t>(known.tifftag), known.tifftype, known.tiffcount));
  place[0] = {0, TIFF_BYTE, 4, std::string("\2\3\0\0", 4)};
  constexpr std::size_t kFirst = 8;
  const auto first = [](std::size_t cameraAt, std::size_t placeAt) {
    return Directory({Filled(0x010f, TIFF_ASCII, 0),
                      {0x9c9b, TIFF_BYTE, 4, std::string("a\0b\0", 4)},
                      {0x8769, TIFF_LONG, 1, Little(cameraAt, 4)},
                      {0x8825, TIFF_LONG, 1, Little(placeAt, 4)}},
                     kFirst);
  };
  const std::size_t cameraAt = kFirst + first(0, 0).size();
  const std::string cameras = Directory(camera, cameraAt);
  const std::size_t placeAt = cameraAt + cameras.size();
  return "II" + Little(42, 2) + Little(kFirst, 4) + first(cameraAt, placeAt) + cameras + Directory(place, placeAt);
}

class ExifFields : public testing::Test {
 protected:
  // A PNG file with this Exif data as its writer passes them on.
  std::filesystem::path WritePhoto(const char* name, const std::string& exif) {
    HostImage image;
    image.Reset(8, 4, 16, 8);
    FillRandom(image, 0, 255, 1);
    LibraryMetadata metadata;
    metadata.info.format = "jpeg";
    metadata.info.exif = exif;
    metadata.info.display = metadata.info.data = {0, 0, 16, 8};
    metadata.info.choice = {0, 1, 2, -1};
    for (const char* channel : {"R", "G", "B"})
      metadata.info.all.push_back({channel, {}});
    PictureWriter().Write(folder_.path() / name, image, &metadata, true);
    return folder_.path() / name;
  }

  OIIO::ImageSpec PassOn(const std::filesystem::path& from, const char* to, std::vector<std::string>& notes) {
    HostImage image;
    const auto read = PictureReader().ReadColour(from, 8, image);
    PictureWriter writer;
    auto written = writer.WriteBeside(folder_.path() / to, image, read.metadata.get(), {.overwrite = true});
    notes = written.Notes();
    written.Commit();
    return OpenPictureFile(folder_.path() / to, {}).file->spec();
  }

  ScratchFolder folder_;
};

TEST_F(ExifFields, ThoseThatAreNotReadAreNamed) {
  EXPECT_EQ(NamesOf(ExifFieldsUnread(EveryField())),
            (Names{"0x9c9b", "0x9999", "OECF", "SubjectArea", "UserComment", "InteroperabilityIFD",
                   "SpatialFrequencyResponse", "FileSource", "SceneType", "CFAPattern", "DeviceSettingDescription",
                   "GPSProcessingMethod", "GPSAreaInformation"}));
  EXPECT_EQ(NamesOf(ExifFieldsUnread(ExifBytes{false, "abc", true}.Build())), Names{});
  EXPECT_EQ(NamesOf(ExifFieldsUnread("")), Names{});
}

// Whatever the library's writers take: what a file lacks is what is told.
TEST_F(ExifFields, ThoseThatAreNotWrittenAreTold) {
  for (const char* from : {"photo.png", "photo.jpg"}) {
    const auto photo = WritePhoto(from, EveryField());
    const OIIO::ImageSpec source = OpenPictureFile(photo, {}).file->spec();
    const PictureReport report = ReportPicture(photo);
    for (const char* to : {"out.jpg", "out.png", "out.tif", "out.exr"}) {
      const OutputFormat& format = OutputFormatOf(to);
      std::vector<std::string> notes;
      const OIIO::ImageSpec out = PassOn(photo, to, notes);
      Names missing = report.info.PassesExifTo(format.name) ? Names{} : NamesOf(report.info.unreadExif);
      for (const auto& attribute : source.extra_attribs) {
        const std::string name = attribute.name().string();
        constexpr std::string_view kVersions[] = {"Exif:ExifVersion", "Exif:FlashPixVersion", "GPS:VersionID"};
        const bool isVersion = std::ranges::find(kVersions, name) != std::end(kVersions);
        const bool isExif = name.starts_with("Exif:") || name.starts_with("GPS:");
        if (!isExif || isVersion || out.find_attribute(name) != nullptr) continue;
        missing.insert(name.starts_with("GPS:") ? "GPS" + name.substr(4) : name.substr(5));
      }
      const bool keepsGps = format.metadata.Has(MetadataGroup::Gps);
      if (!keepsGps) std::erase_if(missing, [](const std::string& name) { return name.starts_with("GPS"); });
      Names told;
      if (const auto lacking = report.lacking.find(format.name); lacking != report.lacking.end())
        told.insert(lacking->second.exifFields.begin(), lacking->second.exifFields.end());
      EXPECT_EQ(told, missing) << from << " " << to;
      const std::string lost = ListOf(LossesOf(report, format, {}, 8));
      EXPECT_EQ(lost.find("UserComment") != std::string::npos, missing.contains("UserComment"));
      EXPECT_EQ(notes, lost.empty() ? std::vector<std::string>{} : std::vector<std::string>{"output: lost: " + lost});
    }
  }
}

TEST_F(ExifFields, WholeNumbersStayInTiffFiles) {
  std::vector<std::string> notes;
  const OIIO::ImageSpec out = PassOn(WritePhoto("photo.jpg", EveryField()), "out.tif", notes);
  EXPECT_EQ(out.get_int_attribute("Exif:MeteringMode"), 7);
  EXPECT_EQ(out.get_int_attribute("Exif:Flash"), 7);
  EXPECT_EQ(out.get_int_attribute("Exif:RecommendedExposureIndex"), 70);
  EXPECT_EQ(out.get_int_attribute("Exif:PixelXDimension"), 16);
  EXPECT_EQ(out.get_int_attribute("Exif:PixelYDimension"), 8);
}

TEST_F(ExifFields, AResolutionHasItsUnit) {
  for (const auto& [unit, name] : {std::pair(2, "in"), std::pair(3, "cm"), std::pair(1, "none")}) {
    std::string block = "II" + Little(42, 2) + Little(8, 4);
    block += Directory({{0x011a, TIFF_RATIONAL, 1, Little(300, 4) + Little(1, 4)},
                        {0x011b, TIFF_RATIONAL, 1, Little(300, 4) + Little(1, 4)},
                        {0x0128, TIFF_SHORT, 1, Little(static_cast<std::size_t>(unit), 2)}},
                       8);
    for (const char* from : {"photo.jpg", "photo.png"}) {
      for (const char* to : {"out.tif", "out.jpg"}) {
        std::vector<std::string> notes;
        const OIIO::ImageSpec out = PassOn(WritePhoto(from, block), to, notes);
        EXPECT_EQ(out.get_float_attribute("XResolution"), 300.0f) << from << to;
        EXPECT_EQ(out.get_string_attribute("ResolutionUnit"), name) << from << to;
      }
    }
  }
}

// A field that is not read is Exif data all the same.
TEST_F(ExifFields, OneFieldThatIsNotReadIsExifData) {
  std::string block = "II" + Little(42, 2) + Little(8, 4);
  block += Directory({{0x9c9b, TIFF_BYTE, 4, std::string("a\0b\0", 4)}}, 8);
  const auto photo = WritePhoto("photo.png", block);
  const auto lost = [&](const char* to) { return ListOf(LossesOf(ReportPicture(photo), OutputFormatOf(to), {}, 8)); };
  EXPECT_EQ(lost("a.png"), "");
  EXPECT_EQ(lost("a.jpg"), "Exif field 0x9c9b");
  EXPECT_EQ(lost("a.bmp"), "Exif data");
}

TEST_F(ExifFields, DamagedBlocksHaveThoseThatTheyHold) {
  const std::string whole = EveryField();
  for (std::size_t length = 0; length < whole.size(); ++length)
    ExifFieldsUnread(whole.substr(0, length));
  for (std::size_t at = 0; at < 8 + 2 + 4 * 12; ++at) {
    std::string damaged = whole;
    damaged[at] = '\xff';
    EXPECT_LE(ExifFieldsUnread(damaged).size(), 300u);
  }
}

TEST_F(ExifFields, OfOtherFilesAreToldByTheirNames) {
  OIIO::ImageSpec output;
  output.attribute("Exif:Unheard", "of");
  output.attribute("Exif:Number", 5);
  output.attribute("Exif:Flash", 1);
  EXPECT_EQ(NamesOf(ExifFieldsUnwritten(output, OutputFormatOf("a.jpg"))), (Names{"Unheard", "Number"}));
  EXPECT_EQ(NamesOf(ExifFieldsUnwritten(output, OutputFormatOf("a.tif"))), (Names{"Unheard", "Number"}));
  EXPECT_EQ(NamesOf(ExifFieldsUnwritten(output, OutputFormatOf("a.png"))), Names{"Number"});
  EXPECT_EQ(NamesOf(ExifFieldsUnwritten(output, OutputFormatOf("a.exr"))), Names{});
}

}  // namespace
}  // namespace vblur::host
