#include "host/pictures/PictureFileMetadata.h"

#include <algorithm>
#include <array>
#include <string>

namespace vblur::host {

namespace {

// How the source stored its pixels, or what is true of these pixels alone.
constexpr std::array<std::string_view, 26> kStorage = {"compression",
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
  return std::ranges::find(names, name) != names.end();
}

bool BeginsWith(std::string_view name, std::string_view group) {
  return name.substr(0, group.size()) == group;
}

// A profile for other colours than those of the file would make it invalid.
bool FitsProfile(const OIIO::ParamValue& profile, PixelLayout pixels) {
  constexpr int kColourSpaceAt = 16;
  if (profile.datasize() < kColourSpaceAt + 4) return false;
  const std::string_view space(static_cast<const char*>(profile.data()) + kColourSpaceAt, 4);
  return space == (IsGrey(pixels) ? "GRAY" : "RGB ");
}

bool IsPassed(std::string_view name, bool sameFormat, std::string_view format) {
  if (Lists(kStorage, name) || BeginsWith(name, "ICCProfile:")) return false;
  // Written as colour tags by some formats, and of no meaning to others.
  if (BeginsWith(name, "oiio:")) return sameFormat && (name == "oiio:ColorSpace" || name == "oiio:Gamma");
  // To the DPX reader an orientation is a reason to swap width and height.
  if (name == "Orientation") return format != "dpx";
  const std::string_view group = name.substr(0, name.find(':'));
  if (group.size() == name.size() || !Lists(kFormatNames, group)) return true;
  // Files of arbitrary attributes keep them for a later output of their own format.
  return group == format || format == "openexr";
}

}  // namespace

PictureMetadata CollectMetadata(const OIIO::ImageSpec& input, const PictureInfo& info) {
  PictureMetadata metadata;
  metadata.input = input;
  metadata.info = info;
  const bool marksAlpha = info.format == "tiff" || info.format == "openexr";
  metadata.associatedAlpha =
      marksAlpha && input.alpha_channel >= 0 && input.get_int_attribute("oiio:UnassociatedAlpha") == 0;
  return metadata;
}

void ApplyMetadata(const PictureMetadata& metadata, PixelLayout pixels, OIIO::ImageSpec& output,
                   std::string_view format) {
  const bool sameFormat = metadata.info.format == format;
  for (const auto& attribute : metadata.input.extra_attribs) {
    const std::string_view name(attribute.name().c_str(), attribute.name().size());
    if (!IsPassed(name, sameFormat, format)) continue;
    if (name == "ICCProfile" && !FitsProfile(attribute, pixels)) continue;
    output.extra_attribs.push_back(attribute);
  }
}

}  // namespace vblur::host
