// The blend operations that work on red, green, blue and alpha as stored, or on luminance and colour differences.
#pragma once

#include <cstdint>

#include "blur/ColourConversion.h"
#include "composite/MergeOperation.h"
#include "composite/PixelMath.h"
#include "image/Arithmetic.h"
#include "image/Pixels.h"

namespace vblur {

// A base of HvMerge. Instances: <R8, Rf, 255>, <R16, Rf, 16384> and <Rf, Rf, 1>, which has no integer forms. Products
// of two stored integers stay within 2^30.
template <class Pixel, class Accum, std::int32_t One>
class HvRGBMerge {
  static_assert(One == Pixel::kOne);

  static constexpr auto kFloatOne = static_cast<float>(One);
  static constexpr auto kThreeOnes = static_cast<float>(3 * One);

  // A product of two components back in their scale, truncated.
  static constexpr std::int32_t unscaled(std::int32_t product) { return product / One; }

  // a + b - ab. Floats above 1.0 would turn it around: there it is the greater, which it also is at 1.0.
  static constexpr float screened(float a, float b) {
    const float sum = a + b - b * a / kFloatOne;
    if constexpr (Pixel::kIntegral) return sum;
    const float greater = GreaterOf{}(a, b);
    return greater > kFloatOne ? greater : sum;
  }

  // Where both floats are negative, so is their product: what is darker than black does not light up.
  static constexpr float multiplied(float a, float b) {
    const float product = a * b / kFloatOne;
    if constexpr (Pixel::kIntegral) return product;
    return GreaterOf{}(a, b) < 0.0f ? -product : product;
  }

  // One function for the three colours and one for alpha.
  template <class Operand, class Colour, class Alpha>
  static constexpr Pixel each(const Operand& p, const Operand& q, Colour colour, Alpha alpha) {
    Pixel result{};
    result.red = storeClamped<Pixel>(colour(p.red, q.red));
    result.green = storeClamped<Pixel>(colour(p.green, q.green));
    result.blue = storeClamped<Pixel>(colour(p.blue, q.blue));
    result.alpha = storeClamped<Pixel>(alpha(p.alpha, q.alpha));
    return result;
  }

  using MixedAfter = MergeOperation<Pixel, false>;
  using MixedBefore = MergeOperation<Pixel, true>;

 public:
  struct Screen : MixedAfter {
    static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) {
      return each(
          p, q, [](std::int32_t a, std::int32_t b) { return a + b - unscaled(a * b); }, GreaterOf{});
    }
    static constexpr Pixel ofFloats(const Accum& p, const Accum& q) { return each(p, q, screened, GreaterOf{}); }
  };

  struct Multiply : MixedAfter {
    static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) {
      return each(
          p, q, [](std::int32_t a, std::int32_t b) { return unscaled(a * b); }, LesserOf{});
    }
    static constexpr Pixel ofFloats(const Accum& p, const Accum& q) { return each(p, q, multiplied, LesserOf{}); }
  };

  // Treats all four components alike, in integers and in floats.
  template <class Function>
  struct PlainMerge : MixedAfter {
    static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) { return each(p, q, Function{}, Function{}); }
    static constexpr Pixel ofFloats(const Accum& p, const Accum& q) { return each(p, q, Function{}, Function{}); }
  };

  struct Add : PlainMerge<SumOf> {};
  struct Subtract : PlainMerge<DifferenceOf> {};
  struct Difference : PlainMerge<DistanceOf> {};

  // Brightens p by the mean of q's colours. Both forms compute in floats.
  struct AddOver : MixedAfter {
    static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) {
      return ofFloats(widenedToFloat(p), widenedToFloat(q));
    }
    static constexpr Pixel ofFloats(const Accum& p, const Accum& q) {
      float k = colourSum(q) / kThreeOnes;
      // A mean of floats below -1.0 takes p to 0, and not to its negative.
      if constexpr (!Pixel::kIntegral) k = GreaterOf{}(k, -1.0f);
      return each(
          p, q, [k](float a, float) { return a * k + a; }, SumOf{});
    }
  };

  struct AddUnder : MixedAfter {
    static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) { return AddOver::ofIntegers(q, p); }
    static constexpr Pixel ofFloats(const Accum& p, const Accum& q) { return AddOver::ofFloats(q, p); }
  };

  // Screens where p is bright and multiplies elsewhere, at twice the strength. Bright: the colours of p sum to more
  // than three times One, which stored 8-bit pixels never do.
  struct HardLight : MixedAfter {
    // At 16 bits the doubled product wraps where it reaches 2^31: -32768 by -32768.
    static constexpr std::int32_t doubledProduct(std::int32_t a, std::int32_t b) { return unscaled(wrapMul(2 * a, b)); }

    static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) {
      if constexpr (Pixel::kMax > One) {
        if (colourSum(p) > 3 * One) {
          const auto screened = [](std::int32_t a, std::int32_t b) { return (b + a - unscaled(b * a)) * 2 - One; };
          return each(p, q, screened, screened);
        }
      }
      return each(p, q, doubledProduct, doubledProduct);
    }

    static constexpr Pixel ofFloats(const Accum& p, const Accum& q) {
      if (colourSum(p) > kThreeOnes) {
        const auto twiceScreened = [](float a, float b) { return screened(a, b) * 2.0f - kFloatOne; };
        return each(p, q, twiceScreened, twiceScreened);
      }
      const auto twiceMultiplied = [](float a, float b) { return multiplied(2.0f * a, b); };
      return each(p, q, twiceMultiplied, twiceMultiplied);
    }
  };

  struct Overlay : MixedAfter {
    static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) { return HardLight::ofIntegers(q, p); }
    static constexpr Pixel ofFloats(const Accum& p, const Accum& q) { return HardLight::ofFloats(q, p); }
  };

  // The darker pixel, q on a tie. Its alpha is 0, unlike that of Lighten.
  struct Darken : MixedBefore {
    static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) {
      return withAlpha(colourSum(q) > colourSum(p) ? p : q, 0);
    }
    static constexpr Pixel ofFloats(const Accum& p, const Accum& q) { return withAlpha(DarkerOne::ofFloats(p, q), 0); }
  };

  // The same in floats with the alpha of the one or the other.
  struct DarkerOne : MixedBefore {
    static constexpr Pixel ofFloats(const Accum& p, const Accum& q) {
      return finished<Pixel>(eitherPixel(colourSum(q) > colourSum(p), p, q));
    }
  };

  // The brighter pixel with its alpha, q on a tie.
  struct Lighten : MixedBefore {
    static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) { return colourSum(p) > colourSum(q) ? p : q; }
    static constexpr Pixel ofFloats(const Accum& p, const Accum& q) {
      return finished<Pixel>(eitherPixel(colourSum(p) > colourSum(q), p, q));
    }
  };

  // Luminance of one pixel with the colour differences of the other. Integers are clamped to 0..Max: negative 16-bit
  // colours become 0. Floats change p by the difference, so that equal pixels give p to the last bit.
  template <bool LuminanceOfFirst>
  struct YuvMerge : MergeOperation<Pixel, true, true> {
    static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) {
      const YuvInt c = chosen(yuvFromRgb(std::int32_t{p.red}, std::int32_t{p.green}, std::int32_t{p.blue}),
                              yuvFromRgb(std::int32_t{q.red}, std::int32_t{q.green}, std::int32_t{q.blue}));
      return fromYuv({static_cast<float>(c.y), static_cast<float>(c.u), static_cast<float>(c.v)}, p.alpha);
    }
    static constexpr Pixel ofFloats(const Accum& p, const Accum& q) {
      const YuvFloat c = chosen(yuvFromRgb(p.red, p.green, p.blue), yuvFromRgb(q.red, q.green, q.blue));
      if constexpr (Pixel::kIntegral) {
        return fromYuv(c, storeClamped<Pixel>(p.alpha));
      } else {
        return withYuv(p, c);
      }
    }

   private:
    template <class Yuv>
    static constexpr Yuv chosen(const Yuv& p, const Yuv& q) {
      return LuminanceOfFirst ? Yuv{p.y, q.u, q.v} : Yuv{q.y, p.u, p.v};
    }
    static constexpr Pixel fromYuv(const YuvFloat& c, ComponentOf<Pixel> alpha) {
      Pixel result{};
      rgbFromYuv(result, c, 0.0f, static_cast<float>(Pixel::kMax));
      return withAlpha(result, alpha);
    }
  };

  struct Luminance : YuvMerge<true> {};
  struct Chroma : YuvMerge<false> {};
};

}  // namespace vblur
