// A blend operation as the merge sees it, and the functions of two components that operations are made of.
//
// An operation has two forms: ofIntegers on stored pixels, and ofFloats on pixels with a gain, which may lie
// outside the pixel's range. Both return a finished pixel: every component clamped to the range and truncated. For
// pixels of floats there is the second form alone, and a finished component is what was computed.
// p is the first operand, q the second.
#pragma once

#include <cstdint>

namespace vblur {

// One that mixes its operands is applied to a mix of a and b; any other is applied first, and its result mixed.
template <class Pixel_, bool MixesOperands, bool TakesFirstAlpha = false>
struct MergeOperation {
  using Pixel = Pixel_;
  static constexpr bool kMixesOperands = MixesOperands;
  // The result has the first operand's alpha.
  static constexpr bool kTakesFirstAlpha = TakesFirstAlpha;
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
    // Never a negative zero.
    return d <= 0 ? 0 - d : d;
  }
};

}  // namespace vblur
