// Hue, saturation and value in whole numbers, at the scale of a pixel type: a sextant of the hue circle is
// One wide, saturation runs to One and the value is that of the brightest colour.
#pragma once

#include <algorithm>
#include <cstdint>

#include "image/Arithmetic.h"
#include "image/Pixels.h"

namespace vblur {

struct HvHSV {
  std::int32_t hue = 0;
  std::int32_t saturation = 0;
  std::int32_t value = 0;

  friend bool operator==(const HvHSV&, const HvHSV&) = default;
};

// All of it in signed 32-bit integers that wrap: negative and out-of-range colours are taken as they come.
template <class Pixel>
class HvHSVConverter {
 public:
  static constexpr std::int32_t kOne = Pixel::kOne;
  static constexpr std::int32_t kCircle = kOne * 6;

  static constexpr HvHSV fromRGB(std::int32_t red, std::int32_t green, std::int32_t blue) {
    const std::int32_t most = std::max({red, green, blue});
    if (most == 0) return {};
    const std::int32_t range = wrapSub(most, std::min({red, green, blue}));
    const std::int32_t saturation = wrapDiv(wrapMul(range, kOne), most);
    if (saturation == 0) return {0, 0, most};
    const auto arc = [range](std::int32_t a, std::int32_t b) {
      return wrapDiv(wrapMul(wrapSub(a, b), kTwoOnes), wrapMul(range, 2));
    };
    if (red == most) {
      const std::int32_t hue = arc(green, blue);
      return {hue < 0 ? wrapAdd(hue, kCircle) : hue, saturation, most};
    }
    if (green == most) return {wrapAdd(arc(blue, red), kTwoOnes), saturation, most};
    return {wrapAdd(arc(red, green), 2 * kTwoOnes), saturation, most};
  }

  // Red, green and blue limited to the pixel's range, and an alpha of 0.
  static constexpr Pixel toRGB(const HvHSV& hsv) {
    const std::int32_t v = hsv.value;
    if (hsv.saturation == 0) return pixelOf(v, v, v);
    std::int32_t hue = hsv.hue % kCircle;
    if (hue < 0) hue += kCircle;
    const std::int32_t sextant = hue / kOne;
    const std::int32_t f = hue - sextant * kOne;
    // The value less a share of it, given as the share of the saturation: 0 to One.
    const auto faded = [&](std::int32_t share) { return wrapMul(wrapSub(kOne, share), v) / kOne; };
    const std::int32_t p = faded(hsv.saturation);
    const std::int32_t q = faded(wrapMul(f, hsv.saturation) / kOne);
    const std::int32_t t = faded(wrapMul(kOne - f, hsv.saturation) / kOne);
    switch (sextant) {
      case 0: return pixelOf(v, t, p);
      case 1: return pixelOf(q, v, p);
      case 2: return pixelOf(p, v, t);
      case 3: return pixelOf(p, q, v);
      case 4: return pixelOf(t, p, v);
      default: return pixelOf(v, p, q);
    }
  }

 private:
  static constexpr std::int32_t kTwoOnes = kOne * 2;

  // Toward zero. What does not fit gives -2147483648, and so does a division by 0: a range of exactly 2^31
  // doubles to it.
  static constexpr std::int32_t wrapDiv(std::int32_t a, std::int32_t b) {
    if (b == 0 || (a == kInt32Min && b == -1)) return kInt32Min;
    return a / b;
  }

  static constexpr Pixel pixelOf(std::int32_t red, std::int32_t green, std::int32_t blue) {
    Pixel result{};
    result.red = storeClamped<Pixel>(red);
    result.green = storeClamped<Pixel>(green);
    result.blue = storeClamped<Pixel>(blue);
    return result;
  }
};

}  // namespace vblur
