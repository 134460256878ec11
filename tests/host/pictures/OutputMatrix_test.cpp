// Every format that is written, from every kind of input and its metadata, read again by other code.
#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/files/PictureReport.h"
#include "host/pictures/PictureFileMetadata.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/RawPictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

constexpr int kWidth = 24;
constexpr int kHeight = 16;

// A smooth picture: formats that lose something lose little of it.
std::vector<float> Samples(int channels) {
  std::vector<float> samples;
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      for (int c = 0; c < channels; ++c)
        samples.push_back(static_cast<float>(20 + 5 * x + 4 * y + 20 * c) / 255.0f);
    }
  }
  return samples;
}

OIIO::ImageSpec Spec(int channels, OIIO::TypeDesc type) {
  OIIO::ImageSpec spec(kWidth, kHeight, channels, type);
  if (channels == 2) spec.channelnames = {"Y", "A"};
  if (channels == 2) spec.alpha_channel = 1;
  return spec;
}

void AddProfile(OIIO::ImageSpec& spec) {
  const auto profile = MakeProfile(spec.nchannels < 3 ? "GRAY" : "RGB ");
  spec.attribute("ICCProfile", OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(profile.size())), profile.data());
}

void AddPhoto(OIIO::ImageSpec& spec) {
  spec.attribute("Exif:FNumber", 2.5f);
  spec.attribute("Exif:DateTimeOriginal", "2020:01:01 00:00:00");
  spec.attribute("Exif:ColorSpace", 1);
  spec.attribute("GPS:Altitude", 12.0f);
  spec.attribute("IPTC:City", "Oslo");
  spec.attribute("Orientation", 6);
  spec.attribute("XResolution", 300.0f);
  spec.attribute("YResolution", 300.0f);
  spec.attribute("ResolutionUnit", "in");
  spec.attribute("Artist", "somebody");
  spec.attribute("Copyright", "nobody");
  spec.attribute("ImageDescription", "a text");
  spec.attribute("DateTime", "2019:01:01 00:00:00");
}

void AddFilm(OIIO::ImageSpec& spec) {
  spec.attribute("PixelAspectRatio", 2.0f);
  const unsigned code[2] = {0x01020304, 0};
  spec.attribute("smpte:TimeCode", OIIO::TypeTimeCode, code);
  spec.attribute("dpx:Transfer", "Printing density");
  spec.attribute("dpx:FramePosition", 7);
  spec.attribute("ImageDescription", "a text");
}

struct InputCase {
  std::string file;
  std::string format;
  OIIO::ImageSpec spec;
};

std::vector<InputCase> Inputs() {
  using OIIO::TypeDesc;
  std::vector<InputCase> inputs = {
      {"photo.jpg", "jpeg", Spec(3, TypeDesc::UINT8)},    {"grey.jpg", "jpeg", Spec(1, TypeDesc::UINT8)},
      {"photo.tif", "tiff", Spec(3, TypeDesc::UINT8)},    {"deep.tif", "tiff", Spec(4, TypeDesc::UINT16)},
      {"float.tif", "tiff", Spec(3, TypeDesc::FLOAT)},    {"greyalpha.tif", "tiff", Spec(2, TypeDesc::UINT8)},
      {"text.png", "png", Spec(4, TypeDesc::UINT8)},      {"grey16.png", "png", Spec(1, TypeDesc::UINT16)},
      {"greyalpha.png", "png", Spec(2, TypeDesc::UINT8)}, {"log10.dpx", "dpx", Spec(3, TypeDesc::UINT16)},
      {"deep12.dpx", "dpx", Spec(4, TypeDesc::UINT16)},   {"half.exr", "openexr", Spec(4, TypeDesc::HALF)},
      {"grey.exr", "openexr", Spec(1, TypeDesc::FLOAT)},  {"plain.tga", "targa", Spec(4, TypeDesc::UINT8)},
      {"plain.sgi", "sgi", Spec(3, TypeDesc::UINT16)},    {"plain.bmp", "bmp", Spec(3, TypeDesc::UINT8)},
      {"plain.webp", "webp", Spec(4, TypeDesc::UINT8)},   {"plain.ppm", "pnm", Spec(3, TypeDesc::UINT8)},
      {"plain.hdr", "hdr", Spec(3, TypeDesc::FLOAT)}};
  for (InputCase& input : inputs) {
    OIIO::ImageSpec& spec = input.spec;
    if (input.format != "dpx") AddPhoto(spec);
    if (input.format == "dpx" || input.format == "openexr") AddFilm(spec);
    if (input.format != "openexr") AddProfile(spec);
    if (input.file == "log10.dpx") spec.attribute("oiio:BitsPerSample", 10);
    if (input.file == "deep12.dpx") spec.attribute("oiio:BitsPerSample", 12);
    const float turned[16] = {0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    if (input.format == "openexr") spec.attribute("worldToCamera", OIIO::TypeMatrix, turned);
  }
  return inputs;
}

struct RawPicture {
  int width = 0;
  int height = 0;
  int channels = 0;
  std::string bytes;
};

RawPicture ReadRawFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  RawPicture raw;
  file >> raw.width >> raw.height >> raw.channels;
  file.get();
  raw.bytes.assign(std::istreambuf_iterator<char>(file), {});
  return raw;
}

class OutputMatrix : public testing::Test {
 protected:
  struct Case {
    std::string name;
    const OutputFormat* format = nullptr;
    PictureInfo source;
    std::vector<std::int32_t> components;  // of 8 bits
    SetOf<MetadataGroup> metadata;
  };

  // A picture through the reader and the writer of the host, at the depth that it renders at.
  void Convert(const InputCase& input, const OutputFormat& format) {
    const auto from = folder_.path() / input.file;
    const std::string extension(format.extensions.substr(0, format.extensions.find(' ')));
    const std::string name =
        std::filesystem::path(input.file).stem().string() + "-of-" + input.format + "." + extension;
    HostImage image;
    const PictureReport report = ReportPicture(from);
    const auto read = PictureReader().ReadColour(from, report.info.NaturalDepth(), image);
    PictureWriter().Write(folder_.path() / name, image, read.metadata.get(), false);
    HostImage eight;
    PictureReader().ReadColour(from, 8, eight);
    cases_.push_back({name, &format, report.info, Components(eight), report.metadata});
  }

  void ReadAgain() const {
    std::string command = "/usr/bin/python3 '" VBLUR_SECOND_READER "'";
    for (const Case& each : cases_)
      command += " '" + (folder_.path() / each.name).string() + "'";
    EXPECT_EQ(std::system(command.c_str()), 0);
  }

  // Some readers spread grey, and take no alpha of BMP files.
  static bool IsAnyway(int channels, PixelLayout pixels, std::string_view format) {
    const int expected = (IsGrey(pixels) ? 1 : 3) + (HasAlpha(pixels) ? 1 : 0);
    if (channels == expected) return true;
    return (format == "openexr" && IsGrey(pixels) && channels == expected + 2) || (format == "bmp" && channels == 3);
  }

  static void ExpectPixels(const Case& each, const RawPicture& raw) {
    const std::string_view format = each.format->name;
    const auto pixels = NearestLayout(*each.format, each.source.IsGrey(), each.source.HasAlpha());
    ASSERT_EQ(raw.width, kWidth);
    ASSERT_EQ(raw.height, kHeight);
    ASSERT_TRUE(IsAnyway(raw.channels, pixels, format)) << raw.channels << " channels";
    const int loss = format == "jpeg" || format == "webp" ? 12 : format == "hdr" ? 6 : 2;
    for (int i = 0; i < kWidth * kHeight; ++i) {
      const int x = i % kWidth;
      const int y = kHeight - 1 - i / kWidth;
      for (int c = 0; c < raw.channels; ++c) {
        const bool isAlpha = raw.channels % 2 == 0 && c == raw.channels - 1;
        const auto at = static_cast<std::size_t>(4 * (y * kWidth + x) + (isAlpha ? 3 : c));
        const int found = static_cast<unsigned char>(raw.bytes[static_cast<std::size_t>(i * raw.channels + c)]);
        ASSERT_NEAR(found, each.components[at], loss) << "column " << x << ", row " << y << ", channel " << c;
      }
    }
  }

  // What the format holds of what the source told.
  void ExpectMetadata(const Case& each) const {
    const PictureReport written = ReportPicture(folder_.path() / each.name);
    EXPECT_EQ(TypeFor(written.info.stored), OutputTypeOf(each.source, *each.format, {}));
    for (std::size_t group = 0; group < kMetadataNames.size(); ++group) {
      const auto which = static_cast<MetadataGroup>(group);
      if (which == MetadataGroup::Profile && each.source.IsGrey() != written.info.IsGrey()) continue;
      if (!each.metadata.Has(which) || !each.format->metadata.Has(which)) continue;
      // The library's reader of PNG files takes no profile with so few tags.
      const bool isThere = which == MetadataGroup::Profile && each.format->name == "png"
                               ? Bytes(folder_.path() / each.name).find("iCCP") != std::string::npos
                               : written.metadata.Has(which);
      EXPECT_TRUE(isThere) << kMetadataNames[group];
    }
  }

  ScratchFolder folder_;
  std::vector<Case> cases_;
};

TEST_F(OutputMatrix, EveryOutputOfEveryInputIsOpenedByAnotherReader) {
  for (const InputCase& input : Inputs()) {
    WriteRaw(folder_.path() / input.file, input.format, input.spec, Samples(input.spec.nchannels));
    for (const OutputFormat& format : OutputFormats())
      Convert(input, format);
  }
  ReadAgain();
  for (const Case& each : cases_) {
    SCOPED_TRACE(each.name);
    ExpectPixels(each, ReadRawFile(folder_.path() / (each.name + ".raw")));
    ExpectMetadata(each);
  }
}

}  // namespace
}  // namespace vblur::host
