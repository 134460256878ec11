// What the Windows Imaging Component writes.
#include <array>
#include <limits>

#include "host/files/OutputFormat.h"

namespace vblur::host {

namespace {

using Types = SetOf<SampleType>;
using Layouts = SetOf<PixelLayout>;
using enum SampleType;
using enum PixelLayout;

constexpr std::int32_t kAnySide = std::numeric_limits<std::int32_t>::max();

constexpr auto kBytes = Types::These(Unsigned8);
constexpr auto kWhole = Types::These(Unsigned8, Unsigned16);

constexpr auto kOpaque = Layouts::These(Grey, Rgb);
constexpr auto kNoGreyAlpha = Layouts::These(Grey, Rgb, Rgba);

using Groups = SetOf<MetadataGroup>;
using enum MetadataGroup;

constexpr std::array<OutputFormat, 4> kFormats = {{
    {"png", "png", kWhole, kNoGreyAlpha, false, false, "", false, false, kAnySide,
     Groups::These(Exif, Gps, Profile, Orientation, Resolution, Text)},
    {"tiff", "tif tiff", kWhole, kNoGreyAlpha, false, false, "none lzw zip", false, false, kAnySide,
     Groups::These(Iptc, Profile, Orientation, Resolution, Text)},
    {"jpeg", "jpg jpeg jpe", kBytes, kOpaque, false, false, "", true, false, 65500,
     Groups::These(Exif, Gps, Iptc, Profile, Orientation, Resolution, Text)},
    // Few programs take the fourth byte of such a pixel as alpha.
    {"bmp", "bmp", kBytes, kOpaque, false, false, "", false, false, kAnySide, Groups::These(Resolution)},
}};

}  // namespace

std::span<const OutputFormat> OutputFormats() {
  return kFormats;
}

}  // namespace vblur::host
