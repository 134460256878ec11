// Hue, saturation and value in integers, at the scale of a pixel type, and the blend operations that work on them, of
// integers or floats. A sextant of the hue circle is One wide, saturation runs to One, and the value is the greatest of
// the colours.
#pragma once

#include <algorithm>
#include <cstdint>

#include "composite/HsvOfFloats.h"
#include "composite/MergeOperation.h"
#include "composite/PixelMath.h"
#include "image/Arithmetic.h"
#include "image/Pixels.h"

namespace vblur {

struct HvHSV {
  std::int32_t hue = 0;
  std::int32_t saturation = 0;
  std::int32_t value = 0;

  friend bool operator==(const HvHSV&, const HvHSV&) = default;
};

// A base of HvMerge. Instances: <R8, Rf, 255>, <R16, Rf, 16384> and <Rf, Rf, 1>, which has the operations alone. All
// arithmetic of integers is in signed 32 bits that wrap; negative and out-of-range colours are accepted.
template <class Pixel, class Accum, std::int32_t One>
class HvHSVConverter {
  static_assert(One == Pixel::kOne);

 public:
  static constexpr HvHSV fromRGB(std::int32_t red, std::int32_t green, std::int32_t blue) {
    const std::int32_t most = std::max({red, green, blue});
    if (most == 0) return {};
    const std::int32_t range = wrapSub(most, std::min({red, green, blue}));
    const std::int32_t saturation = wrapDiv(wrapMul(range, One), most);
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

  // Red, green and blue clamped to the pixel's range; alpha is 0.
  static constexpr Pixel toRGB(const HvHSV& hsv) {
    const std::int32_t v = hsv.value;
    if (hsv.saturation == 0) return pixelOf(v, v, v);
    std::int32_t hue = hsv.hue % kCircle;
    if (hue < 0) hue += kCircle;
    const std::int32_t sextant = hue / One;
    const std::int32_t f = hue - sextant * One;
    // The value reduced by share / One.
    const auto faded = [&](std::int32_t share) { return wrapMul(wrapSub(One, share), v) / One; };
    const std::int32_t p = faded(hsv.saturation);
    const std::int32_t q = faded(wrapMul(f, hsv.saturation) / One);
    const std::int32_t t = faded(wrapMul(One - f, hsv.saturation) / One);
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
  // Hue, saturation and value, each of the first pixel or of the second. Operands in floats of integer pixels are
  // truncated first, without a clamp.
  template <bool HueOfFirst, bool SaturationOfFirst, bool ValueOfFirst>
  struct HsvMerge : MergeOperation<Pixel, true, true> {
    static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) {
      return withAlpha(toRGB(chosen(fromRGB(p.red, p.green, p.blue), fromRGB(q.red, q.green, q.blue))), p.alpha);
    }
    static constexpr Pixel ofFloats(const Accum& p, const Accum& q) {
      if constexpr (Pixel::kIntegral) {
        return withAlpha(toRGB(chosen(truncated(p), truncated(q))), storeClamped<Pixel>(p.alpha));
      } else {
        return withAlpha(withHueSaturationValue(HueOfFirst ? p : q, SaturationOfFirst ? p : q, ValueOfFirst ? p : q),
                         p.alpha);
      }
    }

   private:
    // If the pixel that gives the hue is grey, the result is grey too.
    static constexpr HvHSV chosen(const HvHSV& p, const HvHSV& q) {
      const HvHSV& hue = HueOfFirst ? p : q;
      const HvHSV& saturation = SaturationOfFirst ? p : q;
      return {hue.hue, hue.saturation == 0 ? 0 : saturation.saturation, (ValueOfFirst ? p : q).value};
    }
    static constexpr HvHSV truncated(const Accum& p) {
      return fromRGB(truncToInt(p.red), truncToInt(p.green), truncToInt(p.blue));
    }
  };

 public:
  struct Hue : HsvMerge<true, false, false> {};
  struct Saturation : HsvMerge<false, true, false> {};
  struct Value : HsvMerge<false, false, true> {};
  struct Colour : HsvMerge<true, true, false> {};

 private:
  static constexpr std::int32_t kTwoOnes = One * 2;
  static constexpr std::int32_t kCircle = One * 6;

  // Truncates. A quotient that does not fit gives -2147483648, and so does a division by 0, which a range of exactly
  // 2^31 doubles to.
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
