#include "host/hosted/Premultiply.h"

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <limits>

namespace vblur::host {

namespace {

// x / y for a positive y, to nearest, halves away from zero.
std::int64_t NearestQuotient(std::int64_t x, std::int64_t y) {
  return (x < 0 ? x - y / 2 : x + y / 2) / y;
}

template <typename Component>
constexpr std::int64_t kFull = sizeof(Component) == 1 ? 255 : 16384;

template <std::integral Component>
Component Limited(std::int64_t value) {
  using Limits = std::numeric_limits<Component>;
  return static_cast<Component>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

struct Multiply {
  template <std::integral Component>
  Component operator()(Component colour, Component alpha) const {
    return Limited<Component>(NearestQuotient(std::int64_t{colour} * alpha, kFull<Component>));
  }
  float operator()(float colour, float alpha) const { return colour * alpha; }
};

struct Divide {
  template <std::integral Component>
  Component operator()(Component colour, Component alpha) const {
    return alpha <= 0 ? colour : Limited<Component>(NearestQuotient(colour * kFull<Component>, alpha));
  }
  float operator()(float colour, float alpha) const {
    constexpr float kMost = 65504.0f;
    return alpha > 0.0f ? std::clamp(colour / alpha, -kMost, kMost) : colour;
  }
};

template <typename Component, typename Change>
void ChangeRow(std::byte* row, std::int32_t width, Change change) {
  for (std::int32_t x = 0; x < width; ++x, row += 4 * sizeof(Component)) {
    Component pixel[4];
    std::memcpy(pixel, row, sizeof pixel);
    for (int c = 0; c < 3; ++c)
      pixel[c] = change(pixel[c], pixel[3]);
    std::memcpy(row, pixel, sizeof pixel);
  }
}

template <typename Component>
bool HidesColours(const std::byte* row, std::int32_t width) {
  for (std::int32_t x = 0; x < width; ++x, row += 4 * sizeof(Component)) {
    Component pixel[4];
    std::memcpy(pixel, row, sizeof pixel);
    if (pixel[3] <= 0 && (pixel[0] != 0 || pixel[1] != 0 || pixel[2] != 0)) return true;
  }
  return false;
}

template <typename Change>
void ChangeColours(HostImage& image, HostRows rows, Change change) {
  for (std::int32_t y = rows.begin; y < rows.end; ++y) {
    switch (image.Depth()) {
      case 8: ChangeRow<std::uint8_t>(image.Row(y), image.Width(), change); break;
      case 16: ChangeRow<std::int16_t>(image.Row(y), image.Width(), change); break;
      default: ChangeRow<float>(image.Row(y), image.Width(), change);
    }
  }
}

}  // namespace

void MultiplyByAlpha(HostImage& image, HostRows rows) {
  ChangeColours(image, rows, Multiply{});
}

bool HasHiddenColours(const HostImage& image, HostRows rows) {
  for (std::int32_t y = rows.begin; y < rows.end; ++y) {
    const std::byte* const row = image.Row(y);
    const bool hides = image.Depth() == 8    ? HidesColours<std::uint8_t>(row, image.Width())
                       : image.Depth() == 16 ? HidesColours<std::int16_t>(row, image.Width())
                                             : HidesColours<float>(row, image.Width());
    if (hides) return true;
  }
  return false;
}

void DivideByAlpha(HostImage& image, HostRows rows) {
  ChangeColours(image, rows, Divide{});
}

}  // namespace vblur::host
