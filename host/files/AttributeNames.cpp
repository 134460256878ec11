#include "host/files/AttributeNames.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "host/base/NameMatch.h"

namespace vblur::host {

namespace {

// How the source stored its pixels, or what is true of these pixels alone.
constexpr std::array<std::string_view, 29> kStorage = {"compression",
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
                                                       "dpx:EndOfLinePadding",
                                                       "dpx:EndOfImagePadding",
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

}  // namespace

std::optional<MetadataGroup> GroupOfAttribute(std::string_view name, std::optional<float> number) {
  if (Lists(kStorage, name) || BeginsWith(name, "oiio:") || BeginsWith(name, "ICCProfile:")) return std::nullopt;
  // In every OpenEXR file, about its windows.
  if (BeginsWith(name, "screenWindow")) return std::nullopt;
  if ((name == "Orientation" || name == "PixelAspectRatio") && number == 1.0f) return std::nullopt;
  const auto named =
      std::ranges::find_if(kGroups, [&](const NamedGroup& each) { return BeginsWith(name, each.beginning); });
  if (named != kGroups.end()) return named->group;
  if (Lists(kExif, name)) return MetadataGroup::Exif;
  // A format's own header fields, and its spellings of the groups above.
  const std::string_view group = name.substr(0, name.find(':'));
  if (group.size() != name.size() && Lists(kFormatNames, group)) return std::nullopt;
  return Lists(kTexts, name) ? MetadataGroup::Text : MetadataGroup::Other;
}

bool IsPassedAttribute(std::string_view name, bool sameFormat, std::string_view format) {
  if (Lists(kStorage, name) || BeginsWith(name, "ICCProfile:")) return false;
  // Some formats write these as colour tags, others ignore them.
  if (BeginsWith(name, "oiio:")) return sameFormat && (name == "oiio:ColorSpace" || name == "oiio:Gamma");
  // The DPX reader swaps width and height by an orientation.
  if (name == "Orientation") return format != "dpx";
  const std::string_view group = name.substr(0, name.find(':'));
  if (group.size() == name.size() || !Lists(kFormatNames, group)) return true;
  return group == format;
}

bool IsEmptyText(std::string_view text) {
  return text.find_first_not_of(std::string_view(" \0", 2)) == std::string_view::npos;
}

bool IsPrintableText(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
}

bool IsPngKeyword(std::string_view name) {
  constexpr std::size_t kLongest = 79;
  return !name.empty() && name.size() <= kLongest && IsPrintableText(name) && name.front() != ' ' &&
         name.back() != ' ' && name.find("  ") == std::string_view::npos;
}

// A text of any name goes into a PNG file, and these go into a TIFF file.
bool KeepsOtherText(std::string_view format, std::string_view name) {
  return format == "png" ? IsPngKeyword(name) : format == "tiff" && (name == "DocumentName" || name == "HostComputer");
}

}  // namespace vblur::host
