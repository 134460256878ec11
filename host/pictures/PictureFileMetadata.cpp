#include "host/pictures/PictureFileMetadata.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace vblur::host {

namespace {

// Passed on between formats that support it.
constexpr std::array<std::string_view, 22> kKept = {
    "PixelAspectRatio", "Orientation",    "XResolution",   "YResolution",     "ResolutionUnit",
    "ICCProfile",       "smpte:TimeCode", "smpte:KeyCode", "FramesPerSecond", "chromaticities",
    "whiteLuminance",   "DateTime",       "Artist",        "Copyright",       "ImageDescription",
    "DocumentName",     "HostComputer",   "Make",          "Model",           "Keywords",
    "worldToCamera",    "worldToNDC"};
constexpr std::array<std::string_view, 3> kKeptGroups = {"Exif:", "GPS:", "IPTC:"};

constexpr std::array<std::string_view, 5> kLossless = {"none", "rle", "zip", "zips", "piz"};

bool IsKept(std::string_view name) {
  return std::find(kKept.begin(), kKept.end(), name) != kKept.end() ||
         std::any_of(kKeptGroups.begin(), kKeptGroups.end(),
                     [&](std::string_view group) { return name.substr(0, group.size()) == group; });
}

// A profile for grey or four-ink pictures would make a file of red, green and blue invalid.
bool IsRgbProfile(const OIIO::ParamValue& profile) {
  constexpr int kColourSpaceAt = 16;
  if (profile.datasize() < kColourSpaceAt + 4) return false;
  return std::string_view(static_cast<const char*>(profile.data()) + kColourSpaceAt, 4) == "RGB ";
}

}  // namespace

PictureMetadata CollectMetadata(const OIIO::ImageSpec& input, const PictureInfo& info) {
  PictureMetadata metadata;
  metadata.input = input;
  metadata.info = info;
  for (const auto& attribute : input.extra_attribs) {
    const std::string_view name(attribute.name().c_str(), attribute.name().size());
    if (!IsKept(name) || (name == "ICCProfile" && !IsRgbProfile(attribute))) continue;
    metadata.attributes.push_back(attribute);
  }
  const std::string& format = info.format;
  const bool marksAlpha = format == "tiff" || format == "openexr";
  metadata.associatedAlpha =
      marksAlpha && input.alpha_channel >= 0 && input.get_int_attribute("oiio:UnassociatedAlpha") == 0;
  const std::string compression = input.get_string_attribute("compression");
  if (format == "openexr" && std::find(kLossless.begin(), kLossless.end(), compression) != kLossless.end()) {
    metadata.losslessExr = compression;
  }
  metadata.data = input.roi();
  metadata.display = input.roi_full();
  return metadata;
}

void ApplyMetadata(const PictureMetadata& metadata, const OIIO::ImageOutput& writer, OIIO::ImageSpec& output) {
  // To the DPX reader an orientation is a reason to swap width and height.
  const bool takesOrientation = std::string_view(writer.format_name()) != "dpx";
  for (const auto& attribute : metadata.attributes) {
    if (takesOrientation || attribute.name() != "Orientation") output.extra_attribs.push_back(attribute);
  }
  const bool sameSize = metadata.data.width() == output.width && metadata.data.height() == output.height;
  if (!sameSize || !writer.supports("displaywindow") || !writer.supports("arbitrary_metadata")) return;
  output.x = metadata.data.xbegin;
  output.y = metadata.data.ybegin;
  output.full_x = metadata.display.xbegin;
  output.full_y = metadata.display.ybegin;
  output.full_width = metadata.display.width();
  output.full_height = metadata.display.height();
}

}  // namespace vblur::host
