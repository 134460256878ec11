// The formats of pictures that the effect renders, and what belongs to each.
#pragma once

#include <array>
#include <cstdint>

#include "platform/DsTypes.h"
#include "platform/OwnFormats.h"

namespace vblur {

struct FrameFormat {
  GUID colour;
  // Of the masks that go with it.
  GUID mask;
  std::int32_t componentBytes = 1;
};

inline constexpr std::array<FrameFormat, 3> kFrameFormats{
    {{MFIF_RGBA_RAW_32, MFIF_MASK_8, 1}, {MFIF_RGBA_S2_14, MFIF_MASK_16, 2}, {kFormatRgbaFloat, kFormatMaskFloat, 4}}};

// The one whose colours have this format; null for none.
constexpr const FrameFormat* FormatOfColours(const GUID& format) {
  for (const FrameFormat& each : kFrameFormats) {
    if (each.colour == format) return &each;
  }
  return nullptr;
}

// Of a component of a colour picture or a mask; 0 for an unknown format.
constexpr std::int32_t ComponentBytesOf(const GUID& format) {
  for (const FrameFormat& each : kFrameFormats) {
    if (each.colour == format || each.mask == format) return each.componentBytes;
  }
  return 0;
}
// Of a pixel, likewise.
constexpr std::int32_t PixelBytesOf(const GUID& format) {
  return ComponentBytesOf(format) * (FormatOfColours(format) == nullptr ? 1 : 4);
}

}  // namespace vblur
