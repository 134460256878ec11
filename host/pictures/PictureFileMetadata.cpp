#include "host/pictures/PictureFileMetadata.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>

#include <OpenImageIO/tiffutils.h>

#include "host/files/AttributeNames.h"
#include "host/files/ColourProfile.h"
#include "host/formats/TiffTagKinds.h"
#include "host/pictures/PngChunks.h"

namespace vblur::host {

namespace {

OIIO::TypeDesc LibraryTypeOf(const StoredType& stored) {
  using enum OIIO::TypeDesc::BASETYPE;
  const bool isSigned = stored.number == NumberKind::Signed;
  if (stored.number == NumberKind::Float) return stored.bytes == 2 ? HALF : stored.bytes == 4 ? FLOAT : DOUBLE;
  if (stored.bytes == 1) return isSigned ? INT8 : UINT8;
  if (stored.bytes == 2) return isSigned ? INT16 : UINT16;
  return isSigned ? INT32 : UINT32;
}

// The library makes fractions of Exif data: one by 0 of 1/2, 1/4 and so on, and 0.00999 of 0.01. The next larger float
// becomes the right one.
void MakeFraction(OIIO::ParamValue& attribute) {
  const auto group = GroupOf(attribute);
  if (group != MetadataGroup::Exif && group != MetadataGroup::Gps) return;
  if (attribute.type() != OIIO::TypeDesc::FLOAT) return;
  const float value = attribute.get_float();
  if (std::abs(value) >= 1.0f || value == 0.0f) return;
  attribute = OIIO::ParamValue(attribute.name(), std::nextafter(value, std::copysign(1.0f, value)));
}

// The writer of TIFF files takes no other whole numbers for fields of Exif data.
void MakeSigned(OIIO::ParamValue& attribute) {
  const bool isWhole = attribute.type() == OIIO::TypeDesc::UINT16 || attribute.type() == OIIO::TypeDesc::UINT32;
  if (GroupOf(attribute) == MetadataGroup::Exif && isWhole)
    attribute = OIIO::ParamValue(attribute.name(), attribute.get_int());
}

// Readers take the numbers of a resolution from Exif data: that of JPEG files without their unit, that of PNG files
// with its number in place of its name.
void NameResolutionUnit(const std::string& exif, OIIO::ImageSpec& input) {
  constexpr std::array<const char*, 4> kNames{"", "none", "in", "cm"};
  const auto* attribute = input.find_attribute("ResolutionUnit");
  if (attribute == nullptr || (attribute->type() == OIIO::TypeDesc::STRING && attribute->get_string() != "none"))
    return;
  OIIO::ImageSpec held;
  if (!exif.empty()) OIIO::decode_exif(OIIO::string_view(exif), held);
  const bool isOfExif = held.get_float_attribute("XResolution") == input.get_float_attribute("XResolution");
  const int unit = held.get_int_attribute("ResolutionUnit");
  if (isOfExif && unit >= 1 && unit <= 3) input.attribute("ResolutionUnit", kNames[static_cast<std::size_t>(unit)]);
}

// The library's reader of JPEG files has the width of a pixel by its height upside down.
void TurnPixelAspect(OIIO::ImageSpec& spec) {
  const float x = spec.get_float_attribute("XResolution");
  const float y = spec.get_float_attribute("YResolution");
  if (x > 0.0f && y > 0.0f && spec.find_attribute("PixelAspectRatio") != nullptr)
    spec.attribute("PixelAspectRatio", y / x);
}

}  // namespace

SetOf<PixelLayout> LayoutsOfProfile(const OIIO::ParamValue& profile) {
  return LayoutsOfProfile(
      std::string_view(static_cast<const char*>(profile.data()), static_cast<std::size_t>(profile.datasize())));
}

std::optional<MetadataGroup> GroupOf(const OIIO::ParamValue& attribute) {
  const std::string_view name(attribute.name().c_str(), attribute.name().size());
  std::optional<float> number;
  if (attribute.type().is_floating_point()) {
    number = attribute.get_float();
  } else if (attribute.type() != OIIO::TypeDesc::STRING) {
    number = static_cast<float>(attribute.get_int());
  }
  return GroupOfAttribute(name, number);
}

bool IsTextOf(const OIIO::ParamValue& attribute, std::string_view format) {
  return format == "png" && attribute.type() == OIIO::TypeDesc::STRING && attribute.name() != "ICCProfile";
}

LibraryMetadata CollectMetadata(const OIIO::ImageSpec& input, const PictureInfo& info) {
  LibraryMetadata metadata;
  metadata.input = input;
  if (info.format == "png") MakePngTextsUtf8(metadata.input);
  if (info.format == "jpeg" || info.format == "png") NameResolutionUnit(info.exif, metadata.input);
  if (info.format == "jpeg") TurnPixelAspect(metadata.input);
  if (!IsOrientation(metadata.input.get_int_attribute("Orientation", 1))) metadata.input.erase_attribute("Orientation");
  metadata.info = info;
  const bool marksAlpha = info.format == "tiff" || info.format == "openexr";
  metadata.associatedAlpha =
      marksAlpha && input.alpha_channel >= 0 && input.get_int_attribute("oiio:UnassociatedAlpha") == 0;
  return metadata;
}

LibraryMetadata MetadataOf(const PictureMetadata& light) {
  LibraryMetadata metadata;
  metadata.info = light.info;
  metadata.associatedAlpha = light.associatedAlpha;
  const PictureInfo& info = light.info;
  OIIO::ImageSpec& spec = metadata.input;
  spec =
      OIIO::ImageSpec(info.data.width, info.data.height, static_cast<int>(info.all.size()), LibraryTypeOf(info.stored));
  for (const FileChannel& channel : info.all)
    spec.channelformats.push_back(LibraryTypeOf(channel.type));
  for (const PictureAttribute& attribute : *light.Light()) {
    if (attribute.IsText()) {
      spec.attribute(attribute.name, attribute.value);
    } else {
      spec.attribute(attribute.name, OIIO::TypeDesc(attribute.type), attribute.value.data());
    }
  }
  return metadata;
}

void ApplyMetadata(const LibraryMetadata& metadata, PixelLayout pixels, OIIO::ImageSpec& output,
                   const OutputFormat& format) {
  const bool sameFormat = metadata.info.format == format.name;
  for (const auto& attribute : metadata.input.extra_attribs) {
    const std::string_view name(attribute.name().c_str(), attribute.name().size());
    if (!IsPassedAttribute(name, sameFormat, format.name)) continue;
    // Writers of IPTC data end the program at an empty text.
    if (attribute.type() == OIIO::TypeDesc::STRING && IsEmptyText(attribute.get_string())) continue;
    if (name == "ICCProfile" && !LayoutsOfProfile(attribute).Has(pixels)) continue;
    output.extra_attribs.push_back(attribute);
    if (name == "Exif:PixelXDimension") output.attribute(attribute.name(), output.width);
    if (name == "Exif:PixelYDimension") output.attribute(attribute.name(), output.height);
    if (format.name == "jpeg" || format.name == "png") MakeFraction(output.extra_attribs.back());
    if (format.name == "tiff") MakeSigned(output.extra_attribs.back());
    // TIFF files get theirs on demand alone.
    if (format.name == "tiff" && name.starts_with("IPTC:")) output.attribute("tiff:write_iptc", 1);
  }
}

// Segments of a JPEG file hold 65533 bytes, and its writer ends the program beyond that.
std::vector<std::string> TakeLongTexts(OIIO::ImageSpec& output, const OutputFormat& format) {
  constexpr std::size_t kMostText = 60000;
  return format.name == "jpeg" ? TakeLongTexts(output, kMostText) : std::vector<std::string>();
}

std::vector<std::string> TakeLongTexts(OIIO::ImageSpec& output, std::size_t most) {
  auto& all = output.extra_attribs;
  const auto lengthOf = [](const OIIO::ParamValue& attribute) {
    return attribute.type() == OIIO::TypeDesc::STRING ? attribute.get_string().size() : 0;
  };
  std::size_t length = 0;
  for (const auto& attribute : all)
    length += lengthOf(attribute);
  std::vector<std::string> taken;
  while (length > most) {
    const auto longest = std::ranges::max_element(all, {}, lengthOf);
    length -= lengthOf(*longest);
    taken.push_back(longest->name().string());
    all.erase(longest);
  }
  return taken;
}

}  // namespace vblur::host
