// The blend operations on red, green, blue and alpha as they stand. Each has two forms: ofIntegers on
// stored pixels, and ofFloats on pixels with a gain, which need not lie in the pixel's range. The result
// of both is a finished pixel, every component limited to the range and truncated.
//
// p is the first operand, q the second. Products of two components stay within 2^30.
#pragma once

#include <cstdint>

#include "composite/PixelMath.h"
#include "image/Arithmetic.h"
#include "image/Pixels.h"

namespace vblur::blend {

// What a merge needs to know of an operation beside its two forms. One that mixes its operands is applied
// to a mix of a and b; any other is applied first, and its result is mixed.
template <class Pixel_, bool MixesOperands, bool TakesFirstAlpha = false>
struct MergeOperation {
  using Pixel = Pixel_;
  static constexpr bool kMixesOperands = MixesOperands;
  // The result has the first operand's alpha, whatever the second one's.
  static constexpr bool kTakesFirstAlpha = TakesFirstAlpha;
  static constexpr float kOne = static_cast<float>(Pixel::kOne);
  static constexpr float kThreeOnes = static_cast<float>(3 * Pixel::kOne);

  // A product of two components back in their scale, toward zero.
  static constexpr std::int32_t unscaled(std::int32_t product) { return product / Pixel::kOne; }

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
};

struct LesserOf {
  template <class T>
  constexpr auto operator()(T a, T b) const {
    return a < b ? +a : +b;
  }
};

struct GreaterOf {
  template <class T>
  constexpr auto operator()(T a, T b) const {
    return a > b ? +a : +b;
  }
};

struct SumOf {
  template <class T>
  constexpr auto operator()(T a, T b) const {
    return a + b;
  }
};

struct DifferenceOf {
  template <class T>
  constexpr auto operator()(T a, T b) const {
    return a - b;
  }
};

struct DistanceOf {
  template <class T>
  constexpr auto operator()(T a, T b) const {
    const auto d = a - b;
    return d < 0 ? -d : d;
  }
};

template <class Pixel>
struct Screen : MergeOperation<Pixel, false> {
  using Base = MergeOperation<Pixel, false>;
  static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) {
    return Base::each(
        p, q, [](std::int32_t a, std::int32_t b) { return a + b - Base::unscaled(a * b); }, GreaterOf{});
  }
  static constexpr Pixel ofFloats(const Rf& p, const Rf& q) {
    return Base::each(
        p, q, [](float a, float b) { return a + b - b * a / Base::kOne; }, GreaterOf{});
  }
};

template <class Pixel>
struct Multiply : MergeOperation<Pixel, false> {
  using Base = MergeOperation<Pixel, false>;
  static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) {
    return Base::each(
        p, q, [](std::int32_t a, std::int32_t b) { return Base::unscaled(a * b); }, LesserOf{});
  }
  static constexpr Pixel ofFloats(const Rf& p, const Rf& q) {
    return Base::each(
        p, q, [](float a, float b) { return a * b / Base::kOne; }, LesserOf{});
  }
};

// An operation that treats all four components alike and reads the same in integers and floats.
template <class Pixel, class Function>
struct PlainMerge : MergeOperation<Pixel, false> {
  using Base = MergeOperation<Pixel, false>;
  static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) { return Base::each(p, q, Function{}, Function{}); }
  static constexpr Pixel ofFloats(const Rf& p, const Rf& q) { return Base::each(p, q, Function{}, Function{}); }
};

template <class Pixel>
struct Add : PlainMerge<Pixel, SumOf> {};

template <class Pixel>
struct Subtract : PlainMerge<Pixel, DifferenceOf> {};

template <class Pixel>
struct Difference : PlainMerge<Pixel, DistanceOf> {};

// Brightens p by the mean of q's colours. Both forms reckon in floats; only alpha tells them apart, and
// a sum of two stored alphas is the same in either.
template <class Pixel>
struct AddOver : MergeOperation<Pixel, false> {
  using Base = MergeOperation<Pixel, false>;
  static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) {
    return ofFloats(widenedToFloat(p), widenedToFloat(q));
  }
  static constexpr Pixel ofFloats(const Rf& p, const Rf& q) {
    const float k = colourSum(q) / Base::kThreeOnes;
    return Base::each(
        p, q, [k](float a, float) { return a * k + a; }, SumOf{});
  }
};

template <class Pixel>
struct AddUnder : MergeOperation<Pixel, false> {
  static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) { return AddOver<Pixel>::ofIntegers(q, p); }
  static constexpr Pixel ofFloats(const Rf& p, const Rf& q) { return AddOver<Pixel>::ofFloats(q, p); }
};

// Screens where p is bright and multiplies elsewhere, at twice the strength. Bright means that the
// colours of p sum to more than three times One, so that stored 8-bit pixels are never bright.
template <class Pixel>
struct HardLight : MergeOperation<Pixel, false> {
  using Base = MergeOperation<Pixel, false>;

  // At 16 bits the doubled product wraps where it reaches 2^31: -32768 by -32768.
  static constexpr std::int32_t doubledProduct(std::int32_t a, std::int32_t b) {
    return Base::unscaled(wrapMul(2 * a, b));
  }

  static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) {
    if constexpr (Pixel::kMax > Pixel::kOne) {
      if (colourSum(p) > 3 * Pixel::kOne) {
        const auto screened = [](std::int32_t a, std::int32_t b) {
          return (b + a - Base::unscaled(b * a)) * 2 - Pixel::kOne;
        };
        return Base::each(p, q, screened, screened);
      }
    }
    return Base::each(p, q, doubledProduct, doubledProduct);
  }

  static constexpr Pixel ofFloats(const Rf& p, const Rf& q) {
    if (colourSum(p) > Base::kThreeOnes) {
      const auto screened = [](float a, float b) { return (b + a - b * a / Base::kOne) * 2.0f - Base::kOne; };
      return Base::each(p, q, screened, screened);
    }
    const auto multiplied = [](float a, float b) { return 2.0f * a * b / Base::kOne; };
    return Base::each(p, q, multiplied, multiplied);
  }
};

template <class Pixel>
struct Overlay : MergeOperation<Pixel, false> {
  static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) { return HardLight<Pixel>::ofIntegers(q, p); }
  static constexpr Pixel ofFloats(const Rf& p, const Rf& q) { return HardLight<Pixel>::ofFloats(q, p); }
};

// The darker pixel, q when both are alike. Its alpha is 0, unlike that of Lighten.
template <class Pixel>
struct Darken : MergeOperation<Pixel, true> {
  static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) {
    return withoutAlpha(colourSum(q) > colourSum(p) ? p : q);
  }
  static constexpr Pixel ofFloats(const Rf& p, const Rf& q) {
    return withoutAlpha(finished<Pixel>(colourSum(q) > colourSum(p) ? p : q));
  }

 private:
  static constexpr Pixel withoutAlpha(Pixel pixel) {
    pixel.alpha = 0;
    return pixel;
  }
};

// The brighter pixel with its alpha, q when both are alike.
template <class Pixel>
struct Lighten : MergeOperation<Pixel, true> {
  static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) { return colourSum(p) > colourSum(q) ? p : q; }
  static constexpr Pixel ofFloats(const Rf& p, const Rf& q) {
    return finished<Pixel>(colourSum(p) > colourSum(q) ? p : q);
  }
};

}  // namespace vblur::blend
