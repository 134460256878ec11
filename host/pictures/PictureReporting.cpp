#include "host/pictures/PictureReporting.h"

#include <utility>

#include "host/files/AttributeNames.h"
#include "host/pictures/ExifFields.h"
#include "host/pictures/PictureFileOpen.h"

namespace vblur::host {

PictureReport DescribeFile(const std::filesystem::path& path, const ReadChoice& choice) {
  return DescribePicture(OpenPictureFile(path, choice).Metadata());
}

namespace {

// Of fields whose group the format holds; those of others are lost with it.
std::vector<std::string> FieldsLacking(const PictureInfo& info, const OIIO::ImageSpec& output,
                                       const OutputFormat& format) {
  if (info.PassesExifTo(format.name)) return {};
  std::vector<ExifFieldName> fields = info.unreadExif;
  const auto unwritten = ExifFieldsUnwritten(output, format);
  fields.insert(fields.end(), unwritten.begin(), unwritten.end());
  std::vector<std::string> names;
  for (const ExifFieldName& field : fields) {
    if (format.metadata.Has(field.isGps ? MetadataGroup::Gps : MetadataGroup::Exif)) names.push_back(field.name);
  }
  return names;
}

bool KeepsOther(const OutputFormat& format, const OIIO::ParamValue& attribute) {
  return attribute.type() == OIIO::TypeDesc::STRING && KeepsOtherText(format.name, attribute.name().string());
}

std::vector<std::string> OthersKept(const OIIO::ImageSpec& output, const OutputFormat& format) {
  std::vector<std::string> names;
  for (const auto& attribute : output.extra_attribs) {
    if (GroupOf(attribute) == MetadataGroup::Other && KeepsOther(format, attribute))
      names.push_back(attribute.name().string());
  }
  return names;
}

void AddLacking(const LibraryMetadata& metadata, PictureReport& report) {
  for (const OutputFormat& format : OutputFormats()) {
    OIIO::ImageSpec output;
    ApplyMetadata(metadata, PixelLayout::Rgb, output, format);
    PartsLacking parts;
    parts.exifFields = FieldsLacking(metadata.info, output, format);
    parts.longTexts = TakeLongTexts(output, format);
    parts.keptOthers = OthersKept(output, format);
    // What holds no texts is told to lose them all.
    if (format.metadata.Has(MetadataGroup::Text) && !metadata.info.PassesExifTo(format.name))
      parts.furtherTexts = metadata.info.furtherTexts;
    if (!parts.exifFields.empty() || !parts.longTexts.empty() || !parts.keptOthers.empty() ||
        !parts.furtherTexts.empty())
      report.lacking.emplace(std::string(format.name), std::move(parts));
  }
}

// As people call it; by its number where the library has no name for it.
std::string CompressionOf(const OIIO::ImageSpec& input) {
  const std::string name = input.get_string_attribute("compression");
  const int number = input.get_int_attribute("tiff:Compression");
  return name.empty() && number > 0 ? "number " + std::to_string(number) : name;
}

// The library reads more of them than the format's outputs have.
void AddCompression(PictureReport& report) {
  const bool isTiff = report.info.format == "tiff" && !report.compression.empty();
  constexpr const char* kUsual = "zip";
  if (!isTiff || !FindCompression(FormatOfExtension("", "tif"), report.compression).empty()) return;
  report.lacking["tiff"].compressions.emplace(report.compression, kUsual);
}

}  // namespace

PictureReport DescribePicture(const LibraryMetadata& metadata) {
  PictureReport report;
  report.info = metadata.info;
  report.compression = CompressionOf(metadata.input);
  report.associatedAlpha = metadata.associatedAlpha;
  for (const auto& attribute : metadata.input.extra_attribs) {
    const auto group = GroupOf(attribute);
    if (!group) continue;
    report.metadata.Add(*group);
    if (group == MetadataGroup::Other) report.others.push_back(attribute.name().string());
    if (!IsTextOf(attribute, metadata.info.format)) report.beyondText.Add(*group);
    if (group == MetadataGroup::Profile) report.profileFits = LayoutsOfProfile(attribute);
    constexpr int kMostValues = 64;
    const bool isLong = attribute.type().numelements() > kMostValues;
    const std::string value = isLong ? std::to_string(attribute.datasize()) + " bytes" : attribute.get_string();
    report.attributes.emplace_back(attribute.name().string(), value);
  }
  report.AddGroupsOfUnreadExif();
  AddLacking(metadata, report);
  AddCompression(report);
  return report;
}

}  // namespace vblur::host
