#include "host/pictures/PictureFileMetadata.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>

#include <OpenImageIO/tiffutils.h>

#include "host/base/NameMatch.h"
#include "host/files/ColourProfile.h"
#include "host/formats/TiffTagKinds.h"
#include "host/pictures/PngChunks.h"

namespace vblur::host {

namespace {

// How the source stored its pixels, or what is true of these pixels alone.
constexpr std::array<std::string_view, 27> kStorage = {"compression",
                                                       "CompressionQuality",
                                                       "planarconfig",
                                                       "textureformat",
                                                       "wrapmodes",
                                                       "thumbnail_width",
                                                       "thumbnail_height",
                                                       "thumbnail_nchannels",
                                                       "thumbnail_image",
                                                       "jpeg:subsampling",
                                                       "tiff:Compression",
                                                       "tiff:PhotometricInterpretation",
                                                       "tiff:PlanarConfiguration",
                                                       "tiff:Predictor",
                                                       "tiff:RowsPerStrip",
                                                       "tiff:ColorSpace",
                                                       "tiff:subfiletype",
                                                       "openexr:lineOrder",
                                                       "openexr:levelmode",
                                                       "openexr:roundingmode",
                                                       "openexr:chunkCount",
                                                       "targa:alpha_type",
                                                       "bmp:bitsperpixel",
                                                       "bmp:version",
                                                       "dpx:ImageDescriptor",
                                                       "dpx:Packing",
                                                       "dpx:EncodingMethod"};

// Attributes that formats keep for themselves begin with their names.
constexpr std::array<std::string_view, 20> kFormatNames = {
    "png", "jpeg", "tiff", "openexr", "dpx", "webp", "targa", "bmp", "pnm",  "sgi",
    "hdr", "gif",  "psd",  "cineon",  "iff", "heif", "ico",   "rla", "fits", "jpeg2000"};

template <std::size_t count>
bool Lists(const std::array<std::string_view, count>& names, std::string_view name) {
  return std::ranges::any_of(names, [&](std::string_view each) { return EqualIgnoringCase(each, name); });
}

bool BeginsWith(std::string_view name, std::string_view group) {
  return name.substr(0, group.size()) == group;
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

// Or one of zeros and blanks, as many cameras write.
bool IsEmptyText(const std::string& text) {
  return text.find_first_not_of(std::string(" \0", 2)) == std::string::npos;
}

bool IsPassed(std::string_view name, bool sameFormat, std::string_view format) {
  if (Lists(kStorage, name) || BeginsWith(name, "ICCProfile:")) return false;
  // Some formats write these as colour tags, others ignore them.
  if (BeginsWith(name, "oiio:")) return sameFormat && (name == "oiio:ColorSpace" || name == "oiio:Gamma");
  // The DPX reader swaps width and height by an orientation.
  if (name == "Orientation") return format != "dpx";
  const std::string_view group = name.substr(0, name.find(':'));
  if (group.size() == name.size() || !Lists(kFormatNames, group)) return true;
  return group == format;
}

struct NamedGroup {
  std::string_view beginning;
  MetadataGroup group;
};

constexpr std::array<NamedGroup, 13> kGroups = {{{"Keywords", MetadataGroup::Iptc},
                                                 {"Exif:", MetadataGroup::Exif},
                                                 {"GPS:", MetadataGroup::Gps},
                                                 {"IPTC:", MetadataGroup::Iptc},
                                                 {"ICCProfile", MetadataGroup::Profile},
                                                 {"Orientation", MetadataGroup::Orientation},
                                                 {"XResolution", MetadataGroup::Resolution},
                                                 {"YResolution", MetadataGroup::Resolution},
                                                 {"ResolutionUnit", MetadataGroup::Resolution},
                                                 {"PixelAspectRatio", MetadataGroup::PixelAspect},
                                                 {"smpte:", MetadataGroup::TimeCode},
                                                 {"FramesPerSecond", MetadataGroup::TimeCode},
                                                 {"dpx:", MetadataGroup::DpxHeader}}};

// Exif data that the library names without "Exif:".
constexpr std::array<std::string_view, 4> kExif = {"Make", "Model", "ExposureTime", "FNumber"};

constexpr std::array<std::string_view, 5> kTexts = {"Artist", "Copyright", "DateTime", "ImageDescription", "Software"};

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
  if (Lists(kStorage, name) || BeginsWith(name, "oiio:") || BeginsWith(name, "ICCProfile:")) return std::nullopt;
  // In every OpenEXR file, about its windows.
  if (BeginsWith(name, "screenWindow")) return std::nullopt;
  if (name == "Orientation" && attribute.get_int() == 1) return std::nullopt;
  if (name == "PixelAspectRatio" && attribute.get_float() == 1.0f) return std::nullopt;
  const auto named =
      std::ranges::find_if(kGroups, [&](const NamedGroup& each) { return BeginsWith(name, each.beginning); });
  if (named != kGroups.end()) return named->group;
  if (Lists(kExif, name)) return MetadataGroup::Exif;
  // A format's own header fields, and its spellings of the groups above.
  const std::string_view group = name.substr(0, name.find(':'));
  if (group.size() != name.size() && Lists(kFormatNames, group)) return std::nullopt;
  return Lists(kTexts, name) ? MetadataGroup::Text : MetadataGroup::Other;
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

LibraryMetadata MetadataOf(const PictureInfo& info, const PngMetadata& png) {
  LibraryMetadata metadata;
  metadata.info = info;
  const auto type = info.samples == SampleKind::Unsigned8 ? OIIO::TypeDesc::UINT8 : OIIO::TypeDesc::UINT16;
  OIIO::ImageSpec& spec = metadata.input;
  spec = OIIO::ImageSpec(info.data.width, info.data.height, info.channels, type);
  if (!png.profile.empty()) {
    spec.attribute("ICCProfile", OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(png.profile.size())),
                   png.profile.data());
  }
  for (const auto& [name, text] : png.texts)
    spec.attribute(name, text);
  if (png.pixelsX == 0) return metadata;
  spec.attribute("ResolutionUnit", png.isInMetres ? "inch" : "none");
  spec.attribute("XResolution", png.ResolutionX());
  spec.attribute("YResolution", png.ResolutionY());
  if (png.PixelAspect() > 0.0f) spec.attribute("PixelAspectRatio", png.PixelAspect());
  return metadata;
}

void ApplyMetadata(const LibraryMetadata& metadata, PixelLayout pixels, OIIO::ImageSpec& output,
                   const OutputFormat& format) {
  const bool sameFormat = metadata.info.format == format.name;
  for (const auto& attribute : metadata.input.extra_attribs) {
    const std::string_view name(attribute.name().c_str(), attribute.name().size());
    if (!IsPassed(name, sameFormat, format.name)) continue;
    // Writers of IPTC data end the program at an empty text.
    if (attribute.type() == OIIO::TypeDesc::STRING && IsEmptyText(attribute.get_string())) continue;
    if (name == "ICCProfile" && !LayoutsOfProfile(attribute).Has(pixels)) continue;
    output.extra_attribs.push_back(attribute);
    if (name == "Exif:PixelXDimension") output.attribute(attribute.name(), output.width);
    if (name == "Exif:PixelYDimension") output.attribute(attribute.name(), output.height);
    if (format.name == "jpeg" || format.name == "png") MakeFraction(output.extra_attribs.back());
    if (format.name == "tiff") MakeSigned(output.extra_attribs.back());
    // TIFF files get theirs on demand alone.
    if (format.name == "tiff" && BeginsWith(name, "IPTC:")) output.attribute("tiff:write_iptc", 1);
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
