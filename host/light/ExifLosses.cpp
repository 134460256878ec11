#include "host/light/ExifLosses.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "host/files/AttributeNames.h"
#include "host/formats/ExifTags.h"
#include "host/light/ExifEncoding.h"

namespace vblur::host {

namespace {

bool IsList(const PictureAttribute& attribute) {
  return attribute.type.find('[') != std::string::npos;
}

// As the full library's writers take them.
bool IsWrittenToTiff(const PictureAttribute& attribute) {
  constexpr std::uint16_t kRefused[] = {0x8827, 0x9212, 0x9213};
  const ExifTag* const tag = FindExifTag(attribute.name);
  if (tag == nullptr || tag->part == ExifPart::Place) return false;
  if (std::ranges::find(kRefused, tag->number) != std::end(kRefused)) return false;
  switch (tag->type) {
    case ExifType::Text: return attribute.IsText();
    case ExifType::Short:
    case ExifType::Long: return attribute.type == "int" || attribute.type == "uint" || attribute.type == "uint16";
    case ExifType::Fraction:
    case ExifType::SignedFraction: return attribute.type == "float";
    default: return false;
  }
}

bool IsWritten(const PictureAttribute& attribute, std::string_view format) {
  if (format == "png" && attribute.IsText()) return true;
  if (format == "png" || format == "jpeg") return IsEncodedInExif(attribute);
  if (format == "tiff") return IsWrittenToTiff(attribute);
  return !IsList(attribute) || attribute.type.starts_with("float");
}

bool IsOfStorage(std::string_view name) {
  const ExifTag* const tag = FindExifTag(name);
  return tag != nullptr && IsExifOfStorage(tag->part, tag->number);
}

}  // namespace

std::vector<std::string> ExifFieldsLost(const PictureInfo& info, const LightAttributes& passed,
                                        const OutputFormat& format) {
  if (info.PassesExifTo(format.name)) return {};
  std::vector<std::string> names;
  const auto add = [&](const std::string& name, bool isGps) {
    if (format.metadata.Has(isGps ? MetadataGroup::Gps : MetadataGroup::Exif)) names.push_back(name);
  };
  for (const ExifFieldName& field : info.unreadExif)
    add(field.name, field.isGps);
  for (const PictureAttribute& attribute : passed.All()) {
    const auto group = GroupOfAttribute(attribute.name, std::nullopt);
    const bool isGps = group == MetadataGroup::Gps;
    if (group != MetadataGroup::Exif && !isGps) continue;
    if (IsWritten(attribute, format.name) || IsOfStorage(attribute.name)) continue;
    add((isGps ? "GPS" : "") + attribute.name.substr(attribute.name.find(':') + 1), isGps);
  }
  return names;
}

}  // namespace vblur::host
