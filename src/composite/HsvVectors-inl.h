// HvHSVConverter on planes, branch-free. Compiled once for each instruction set.
//
// Weights are at most kMostWeight: 8-bit operands stay below 2^13, 16-bit ones within 2^20. Integers wrap, as in the
// plain code.
#if defined(VBLUR_COMPOSITE_HSVVECTORS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VBLUR_COMPOSITE_HSVVECTORS_INL_H
#undef VBLUR_COMPOSITE_HSVVECTORS_INL_H
#else
#define VBLUR_COMPOSITE_HSVVECTORS_INL_H
#endif

#include <cstdint>

#include <hwy/highway.h>

#include "composite/ExactQuotients.h"
#include "composite/PixelVectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

struct Hsv {
  Ints hue;
  Ints saturation;
  Ints value;
};

// Calls of(vector of doubles...) for each half of the lanes and truncates the result; what does not fit gives
// -2147483648.
template <class Of, class... V>
HWY_INLINE Ints InDoubles(const Of& of, V... v) {
  const IntTag d;
  const auto fitting = [](auto dd, auto quotient) HWY_ATTR {
    const auto beyond = hn::Ge(quotient, hn::Set(dd, 2147483648.0));
    return hn::IfThenElse(beyond, hn::Set(dd, -2147483648.0), quotient);
  };
#if HWY_TARGET == HWY_SCALAR
  const hn::Rebind<double, IntTag> dd;
  return hn::DemoteTo(d, fitting(dd, of(dd, hn::PromoteTo(dd, v)...)));
#else
  const hn::Half<IntTag> half;
  const hn::Rebind<double, hn::Half<IntTag>> dd;
  const auto lower = fitting(dd, of(dd, hn::PromoteTo(dd, hn::LowerHalf(half, v))...));
  const auto upper = fitting(dd, of(dd, hn::PromoteTo(dd, hn::UpperHalf(half, v))...));
  return hn::Combine(d, hn::DemoteTo(half, upper), hn::DemoteTo(half, lower));
#endif
}

// Exact truncated quotients. Doubles are precise enough for any two 32-bit integers, floats for integers whose
// magnitudes sum to less than 2^24.
template <class Pixel>
struct Quotients;

template <>
struct Quotients<R8> {
  // Numerators of at most 2 * 8160 * 510.
  static HWY_INLINE Ints Of(Ints a, Ints b) {
    const FloatTag d;
    return Truncated(hn::Div(hn::ConvertTo(d, a), hn::ConvertTo(d, b)));
  }
  static HWY_INLINE Ints ByOne(Ints v) {
    return InDoubles([](auto d, auto wide) HWY_ATTR { return hn::Mul(wide, hn::Set(d, exact::kWideOne255th)); }, v);
  }
};

template <>
struct Quotients<R16> {
  static HWY_INLINE Ints Of(Ints a, Ints b) {
    return InDoubles([](auto, auto wideA, auto wideB) HWY_ATTR { return hn::Div(wideA, wideB); }, a, b);
  }
  static HWY_INLINE Ints ByOne(Ints v) { return DividedBy16384(v); }
};

// 8-bit colours in 0..8160: saturations are at most 255, products at most 255 * 8160.
struct SmallQuotients : Quotients<R8> {
  static HWY_INLINE Ints ByOne(Ints v) { return SmallDividedBy255(v); }
};

template <class Pixel_, class Quotients_ = Quotients<Pixel_>>
struct HsvLanes {
  using Pixel = Pixel_;
  using Quotient = Quotients_;

  static HWY_INLINE Hsv FromRgb(const Planes<Ints>& p) {
    const IntTag d;
    const auto zero = hn::Zero(d);
    const auto one = hn::Set(d, 1);
    const Ints most = hn::Max(hn::Max(p.red, p.green), p.blue);
    const Ints range = hn::Sub(most, hn::Min(hn::Min(p.red, p.green), p.blue));
    // Where a divisor is 0 the pixel is grey and the quotient is discarded.
    const auto black = hn::Eq(most, zero);
    const Ints share = Quotient::Of(hn::Mul(range, hn::Set(d, Pixel::kOne)), hn::IfThenElse(black, one, most));
    const Ints saturation = hn::IfThenZeroElse(black, share);

    const auto redMost = hn::Eq(p.red, most);
    const auto greenMost = hn::Eq(p.green, most);
    const Ints from = hn::IfThenElse(redMost, p.green, hn::IfThenElse(greenMost, p.blue, p.red));
    const Ints to = hn::IfThenElse(redMost, p.blue, hn::IfThenElse(greenMost, p.red, p.green));
    const Ints start =
        hn::IfThenZeroElse(redMost, hn::IfThenElse(greenMost, hn::Set(d, kTwoOnes), hn::Set(d, 2 * kTwoOnes)));
    const Ints arc =
        Quotient::Of(hn::Mul(hn::Sub(from, to), hn::Set(d, kTwoOnes)), hn::Max(hn::Add(range, range), one));
    const Ints angle = hn::Add(arc, start);
    // |arc| <= One, even where its numerator wraps, since the range is above 2^16 there. Only an angle that starts at 0
    // can be negative, and every hue is on the circle.
    const Ints hue = hn::Add(angle, hn::And(hn::ShiftRight<31>(angle), hn::Set(d, kCircle)));
    return {hn::IfThenZeroElse(hn::Eq(saturation, zero), hue), saturation, most};
  }

  // Alpha is 0.
  static HWY_INLINE Planes<Ints> ToRgb(const Hsv& hsv) {
    const IntTag d;
    const auto one = hn::Set(d, Pixel::kOne);
    const Ints v = hsv.value;
    const Ints hue = hsv.hue;
    const Ints sextant = Pixel::kOne == 255 ? SmallDividedBy255(hue) : DividedBy16384(hue);
    const Ints f = hn::Sub(hue, hn::Mul(sextant, one));
    const auto faded = [&](Ints share) HWY_ATTR { return Quotient::ByOne(hn::Mul(hn::Sub(one, share), v)); };
    const auto odd = hn::Ne(hn::And(sextant, hn::Set(d, 1)), hn::Zero(d));
    // The middle colour: t in even sextants, q in odd ones.
    const Ints along = hn::IfThenElse(odd, f, hn::Sub(one, f));
    const Ints least = faded(hsv.saturation);
    const Ints between = faded(Quotient::ByOne(hn::Mul(along, hsv.saturation)));

    const auto is = [&](std::int32_t k) HWY_ATTR { return hn::Eq(sextant, hn::Set(d, k)); };
    const auto grey = hn::Eq(hsv.saturation, hn::Zero(d));
    // A component is the highest in two neighbouring sextants, and the lowest in two.
    const auto component = [&](std::int32_t top, std::int32_t bottom) HWY_ATTR {
      const auto highest = hn::Or(hn::Or(is(top), is((top + 1) % 6)), grey);
      const auto lowest = hn::Or(is(bottom), is((bottom + 1) % 6));
      return StoreClamped<Pixel>(hn::IfThenElse(highest, v, hn::IfThenElse(lowest, least, between)));
    };
    return {component(5, 2), component(1, 4), component(3, 0), hn::Zero(d)};
  }

 private:
  static constexpr std::int32_t kTwoOnes = Pixel::kOne * 2;
  static constexpr std::int32_t kCircle = Pixel::kOne * 6;
};

using SmallHsvLanes = HsvLanes<R8, SmallQuotients>;

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#endif
