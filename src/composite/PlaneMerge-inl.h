// The arithmetic operations of HvRGBMerge on planes of integers and of floats. Compiled once for each instruction set.
#if defined(VBLUR_COMPOSITE_PLANEMERGE_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VBLUR_COMPOSITE_PLANEMERGE_INL_H
#undef VBLUR_COMPOSITE_PLANEMERGE_INL_H
#else
#define VBLUR_COMPOSITE_PLANEMERGE_INL_H
#endif

#include "composite/PixelVectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

// A product of two components back in their scale.
template <class Pixel>
HWY_INLINE Ints Unscaled(Ints product) {
  return Pixel::kOne == 255 ? SmallDividedBy255(product) : DividedBy16384(product);
}

// Multiplying by 1 / 16384 is exact.
template <class Pixel>
HWY_INLINE Floats Unscaled(Floats product) {
  if constexpr (Pixel::kOne == 16384) {
    return hn::Mul(product, hn::Set(FloatTag(), 1.0f / 16384.0f));
  } else {
    return Divided<255>(product);
  }
}

struct LesserOf {
  template <class V>
  HWY_INLINE V operator()(V a, V b) const {
    return hn::Min(a, b);
  }
};

struct GreaterOf {
  template <class V>
  HWY_INLINE V operator()(V a, V b) const {
    return hn::Max(a, b);
  }
};

struct SumOf {
  template <class V>
  HWY_INLINE V operator()(V a, V b) const {
    return hn::Add(a, b);
  }
};

struct DifferenceOf {
  template <class V>
  HWY_INLINE V operator()(V a, V b) const {
    return hn::Sub(a, b);
  }
};

struct DistanceOf {
  template <class V>
  HWY_INLINE V operator()(V a, V b) const {
    return hn::Abs(hn::Sub(a, b));
  }
};

template <class Pixel>
struct ScreenOf {
  template <class V>
  HWY_INLINE V operator()(V a, V b) const {
    return hn::Sub(hn::Add(a, b), Unscaled<Pixel>(hn::Mul(b, a)));
  }
};

template <class Pixel>
struct ProductOf {
  template <class V>
  HWY_INLINE V operator()(V a, V b) const {
    return Unscaled<Pixel>(hn::Mul(a, b));
  }
};

template <class Pixel, class Colour, class Alpha>
struct EachMerge {
  static constexpr bool kMixesOperands = false;
  static constexpr bool kTakesFirstAlpha = false;
  template <class V>
  static HWY_INLINE Planes<Ints> Of(const Planes<V>& p, const Planes<V>& q) {
    const Colour colour;
    return Finished<Pixel>(
        Planes<V>{colour(p.red, q.red), colour(p.green, q.green), colour(p.blue, q.blue), Alpha()(p.alpha, q.alpha)});
  }
};

template <class Pixel>
using Screen = EachMerge<Pixel, ScreenOf<Pixel>, GreaterOf>;
template <class Pixel>
using Multiply = EachMerge<Pixel, ProductOf<Pixel>, LesserOf>;
template <class Pixel>
using Add = EachMerge<Pixel, SumOf, SumOf>;
template <class Pixel>
using Subtract = EachMerge<Pixel, DifferenceOf, DifferenceOf>;
template <class Pixel>
using Difference = EachMerge<Pixel, DistanceOf, DistanceOf>;

// An operation with its operands exchanged.
template <class Operation>
struct Exchange : Operation {
  template <class V>
  static HWY_INLINE Planes<Ints> Of(const Planes<V>& p, const Planes<V>& q) {
    return Operation::Of(q, p);
  }
};

template <class Pixel>
struct AddOver {
  static constexpr bool kMixesOperands = false;
  static constexpr bool kTakesFirstAlpha = false;
  static HWY_INLINE Planes<Ints> Of(const Planes<Ints>& p, const Planes<Ints>& q) {
    return Of(WidenedToFloat(p), WidenedToFloat(q));
  }
  static HWY_INLINE Planes<Ints> Of(const Planes<Floats>& p, const Planes<Floats>& q) {
    const Floats k = Divided<3 * Pixel::kOne>(ColourSum(q));
    const auto brightened = [&](Floats a) HWY_ATTR { return hn::Add(hn::Mul(a, k), a); };
    return Finished<Pixel>(
        Planes<Floats>{brightened(p.red), brightened(p.green), brightened(p.blue), hn::Add(p.alpha, q.alpha)});
  }
};

template <class Pixel>
using AddUnder = Exchange<AddOver<Pixel>>;

template <class Pixel>
struct HardLight {
  static constexpr bool kMixesOperands = false;
  static constexpr bool kTakesFirstAlpha = false;
  static HWY_INLINE Planes<Ints> Of(const Planes<Ints>& p, const Planes<Ints>& q) {
    const IntTag d;
    const auto one = hn::Set(d, Pixel::kOne);
    const auto multiplied = [&](Ints a, Ints b) HWY_ATTR { return Unscaled<Pixel>(hn::Mul(hn::Add(a, a), b)); };
    const Planes<Ints> product = EachOf(p, q, multiplied);
    // Stored 8-bit pixels are never bright.
    if constexpr (Pixel::kMax == Pixel::kOne) return Finished<Pixel>(product);
    const auto screened = [&](Ints a, Ints b) HWY_ATTR {
      const Ints screen = ScreenOf<Pixel>()(a, b);
      return hn::Sub(hn::Add(screen, screen), one);
    };
    const auto bright = hn::Gt(ColourSum(p), hn::Set(d, 3 * Pixel::kOne));
    return Finished<Pixel>(Chosen(bright, EachOf(p, q, screened), product));
  }
  // Doubling after the division equals doubling before it, except for quotients that truncate to 0 either way.
  static HWY_INLINE Planes<Ints> Of(const Planes<Floats>& p, const Planes<Floats>& q) {
    const FloatTag d;
    const auto bright = hn::Gt(ColourSum(p), hn::Set(d, static_cast<float>(3 * Pixel::kOne)));
    const auto either = [&](Floats a, Floats b) HWY_ATTR {
      const Floats product = Unscaled<Pixel>(hn::Mul(b, a));
      const Floats screen = hn::Sub(hn::Add(b, a), product);
      const Floats screened = hn::Sub(hn::Add(screen, screen), hn::Set(d, static_cast<float>(Pixel::kOne)));
      return hn::IfThenElse(bright, screened, hn::Add(product, product));
    };
    return Finished<Pixel>(EachOf(p, q, either));
  }
};

template <class Pixel>
using Overlay = Exchange<HardLight<Pixel>>;

template <class Pixel>
struct Darken {
  static constexpr bool kMixesOperands = true;
  static constexpr bool kTakesFirstAlpha = false;
  template <class V>
  static HWY_INLINE Planes<Ints> Of(const Planes<V>& p, const Planes<V>& q) {
    Planes<Ints> result = Finished<Pixel>(Chosen(hn::Gt(ColourSum(q), ColourSum(p)), p, q));
    result.alpha = hn::Zero(IntTag());
    return result;
  }
};

template <class Pixel>
struct Lighten {
  static constexpr bool kMixesOperands = true;
  static constexpr bool kTakesFirstAlpha = false;
  template <class V>
  static HWY_INLINE Planes<Ints> Of(const Planes<V>& p, const Planes<V>& q) {
    return Finished<Pixel>(Chosen(hn::Gt(ColourSum(p), ColourSum(q)), p, q));
  }
};

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#endif
