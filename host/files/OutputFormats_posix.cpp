// What OpenImageIO writes.
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
constexpr auto kPacked = Types::These(Unsigned8, Unsigned10, Unsigned12, Unsigned16);
constexpr auto kWholeAndFloat = Types::These(Unsigned8, Unsigned16, Half, Float);

constexpr auto kOpaque = Layouts::These(Grey, Rgb);
constexpr auto kNoGreyAlpha = Layouts::These(Grey, Rgb, Rgba);
constexpr auto kAllLayouts = Layouts::These(Grey, GreyAlpha, Rgb, Rgba);

using Groups = SetOf<MetadataGroup>;
using enum MetadataGroup;

// Grey with alpha is left out where readers take its second channel for anything else, alpha where the picture library
// changes the colours with it.
constexpr std::array<OutputFormat, 11> kFormats = {{
    {"png", "png", kWhole, kAllLayouts, false, false, "", false, false, kAnySide,
     Groups::These(Exif, Gps, Profile, Orientation, Resolution, PixelAspect, Text)},
    {"jpeg", "jpg jpeg jpe", kBytes, kOpaque, false, false, "", true, false, 65500,
     Groups::These(Exif, Gps, Iptc, Profile, Orientation, Resolution, Text)},
    {"tiff", "tif tiff", kWholeAndFloat, kAllLayouts, false, false, "none lzw zip packbits", false, true, kAnySide,
     Groups::These(Exif, Iptc, Profile, Orientation, Resolution, PixelAspect, Text)},
    {"openexr", "exr", Types::These(Half, Float), kAllLayouts, true, true,
     "none rle zip zips piz pxr24 b44 b44a dwaa dwab", false, true, kAnySide,
     Groups::These(Exif, Gps, Iptc, Orientation, Resolution, PixelAspect, Text, TimeCode, Other)},
    {"dpx", "dpx", kPacked, kNoGreyAlpha, false, false, "", false, false, kAnySide,
     Groups::These(PixelAspect, Text, TimeCode, DpxHeader)},
    {"webp", "webp", kBytes, Layouts::These(Rgb), false, false, "", true, false, 16383, {}},
    {"targa", "tga", kBytes, kNoGreyAlpha, false, false, "none rle", false, false, 65535,
     Groups::These(PixelAspect, Text)},
    {"bmp", "bmp", kBytes, kNoGreyAlpha, false, false, "", false, false, kAnySide, {}},
    {"pnm", "ppm", kBytes, Layouts::These(Rgb), false, false, "", false, false, kAnySide, {}},
    {"sgi", "sgi rgba rgb", kWhole, kNoGreyAlpha, false, false, "", false, false, 65535, {}},
    {"hdr", "hdr", Types::These(Float), Layouts::These(Rgb), false, false, "", false, false, kAnySide, {}},
}};

}  // namespace

std::span<const OutputFormat> OutputFormats() {
  return kFormats;
}

}  // namespace vblur::host
