// Rectangles of dialogs and their controls, in dialog units and in pixels of a font. y points downwards.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace vblur::host {

// In dialog units: quarters of the font's average character width, eighths of its height.
struct DialogRectangle {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;

  friend bool operator==(const DialogRectangle&, const DialogRectangle&) = default;
};

struct PixelRectangle {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;

  friend bool operator==(const PixelRectangle&, const PixelRectangle&) = default;
};

// number * numerator / denominator to the nearest, halves away from zero, as the system scales dialogs. The denominator
// is above 0; a result beyond 32 bits is the nearest that fits.
inline std::int32_t Scaled(std::int32_t number, std::int32_t numerator, std::int32_t denominator) {
  using Limits = std::numeric_limits<std::int32_t>;
  const std::int64_t product = static_cast<std::int64_t>(number) * numerator;
  const std::int64_t half = product < 0 ? -(denominator / 2) : denominator / 2;
  const std::int64_t quotient = (product + half) / denominator;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(quotient, Limits::min(), Limits::max()));
}

// What the dialog's font measures, in pixels.
struct DialogUnits {
  std::int32_t averageCharacterWidth = 4;
  std::int32_t characterHeight = 8;

  std::int32_t Across(std::int32_t units) const { return Scaled(units, averageCharacterWidth, 4); }
  std::int32_t Down(std::int32_t units) const { return Scaled(units, characterHeight, 8); }
  // Sizes are scaled by themselves, so that equal controls are equal wherever they are.
  PixelRectangle ToPixels(const DialogRectangle& area) const {
    return {Across(area.x), Down(area.y), Across(area.width), Down(area.height)};
  }
};

}  // namespace vblur::host
