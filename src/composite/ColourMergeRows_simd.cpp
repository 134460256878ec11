#include "blur/ColourConversion.h"
#include "composite/MergeRows.h"
#include "image/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "composite/ColourMergeRows_simd.cpp"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "composite/HsvVectors-inl.h"
#include "composite/MergeVectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

// Luminance and Chroma of HvRGBMerge and the operations of HvHSVConverter, on planes.
template <class V>
struct Yuv {
  V y, u, v;
};

HWY_INLINE Ints Weighed(const Planes<Ints>& p, const RgbWeights<std::int32_t>& w) {
  const IntTag d;
  const Ints sum = hn::Add(hn::Mul(p.red, hn::Set(d, w.red)), hn::Mul(p.green, hn::Set(d, w.green)));
  return hn::ShiftRight<12>(hn::Add(sum, hn::Mul(p.blue, hn::Set(d, w.blue))));
}

HWY_INLINE Yuv<Floats> YuvFromRgb(const Planes<Ints>& p) {
  const FloatTag d;
  return {hn::ConvertTo(d, Weighed(p, kRgbToY)), hn::ConvertTo(d, Weighed(p, kRgbToU)),
          hn::ConvertTo(d, Weighed(p, kRgbToV))};
}

HWY_INLINE Floats Times(Floats v, float factor) {
  return hn::Mul(v, hn::Set(FloatTag(), factor));
}

HWY_INLINE Yuv<Floats> YuvFromRgb(const Planes<Floats>& p) {
  const auto& toY = kRgbToYFloat;
  const auto& toU = kRgbToUFloat;
  const auto& toV = kRgbToVFloat;
  return {hn::Add(hn::Add(Times(p.red, toY.red), Times(p.green, toY.green)), Times(p.blue, toY.blue)),
          hn::Sub(Times(p.blue, toU.blue), hn::Add(Times(p.green, toU.green), Times(p.red, toU.red))),
          hn::Sub(hn::Sub(Times(p.red, toV.red), Times(p.green, toV.green)), Times(p.blue, toV.blue))};
}

template <class Pixel>
HWY_INLINE Planes<Ints> RgbFromYuv(const Yuv<Floats>& c, Ints alpha) {
  const auto store = [](Floats v) HWY_ATTR { return Truncated(Limited(v, 0.0f, static_cast<float>(Pixel::kMax))); };
  const auto& r = kYuvToRed;
  const auto& g = kYuvToGreen;
  const auto& b = kYuvToBlue;
  return {store(hn::Add(hn::Add(Times(c.u, r.u), Times(c.y, r.y)), Times(c.v, r.v))),
          store(hn::Sub(hn::Sub(Times(c.y, g.y), Times(c.u, g.u)), Times(c.v, g.v))),
          store(hn::Sub(hn::Add(Times(c.u, b.u), Times(c.y, b.y)), Times(c.v, b.v))), alpha};
}

// A stored alpha needs no clamp.
template <class Pixel>
HWY_INLINE Ints AlphaOf(const Planes<Ints>& p) {
  return p.alpha;
}
template <class Pixel>
HWY_INLINE Ints AlphaOf(const Planes<Floats>& p) {
  return StoreClamped<Pixel>(p.alpha);
}

template <class Pixel, bool kLuminanceOfFirst>
struct YuvMerge {
  static constexpr bool kMixesOperands = true;
  static constexpr bool kTakesFirstAlpha = true;
  template <class V>
  static HWY_INLINE Planes<Ints> Of(const Planes<V>& p, const Planes<V>& q) {
    const Yuv<Floats> luminance = YuvFromRgb(kLuminanceOfFirst ? p : q);
    const Yuv<Floats> chroma = YuvFromRgb(kLuminanceOfFirst ? q : p);
    return RgbFromYuv<Pixel>({luminance.y, chroma.u, chroma.v}, AlphaOf<Pixel>(p));
  }
};

template <class Pixel>
using Luminance = YuvMerge<Pixel, true>;
template <class Pixel>
using Chroma = YuvMerge<Pixel, false>;

template <class Lanes, class Choice>
struct HsvMerge {
  using Pixel = typename Lanes::Pixel;
  static constexpr bool kMixesOperands = true;
  static constexpr bool kTakesFirstAlpha = true;
  static HWY_INLINE Planes<Ints> Of(const Planes<Ints>& p, const Planes<Ints>& q) { return OfTruncated(p, q, p.alpha); }
  static HWY_INLINE Planes<Ints> Of(const Planes<Floats>& p, const Planes<Floats>& q) {
    return OfTruncated(ColoursOf(p), ColoursOf(q), StoreClamped<Pixel>(p.alpha));
  }

 private:
  static HWY_INLINE Planes<Ints> ColoursOf(const Planes<Floats>& p) {
    return {Truncated(p.red), Truncated(p.green), Truncated(p.blue), hn::Zero(IntTag())};
  }
  static HWY_INLINE Planes<Ints> OfTruncated(const Planes<Ints>& p, const Planes<Ints>& q, Ints alpha) {
    Planes<Ints> result = Lanes::ToRgb(Choice()(Lanes::FromRgb(p), Lanes::FromRgb(q)));
    result.alpha = alpha;
    return result;
  }
};

HWY_INLINE Ints UnlessGrey(const Hsv& lendsHue, Ints saturation) {
  const IntTag d;
  return hn::IfThenZeroElse(hn::Eq(lendsHue.saturation, hn::Zero(d)), saturation);
}

struct HueChoice {
  HWY_INLINE Hsv operator()(const Hsv& p, const Hsv& q) const { return {p.hue, UnlessGrey(p, q.saturation), q.value}; }
};

struct SaturationChoice {
  HWY_INLINE Hsv operator()(const Hsv& p, const Hsv& q) const { return {q.hue, UnlessGrey(q, p.saturation), q.value}; }
};

struct ValueChoice {
  HWY_INLINE Hsv operator()(const Hsv& p, const Hsv& q) const { return {q.hue, q.saturation, p.value}; }
};

struct ColourChoice {
  HWY_INLINE Hsv operator()(const Hsv& p, const Hsv& q) const { return {p.hue, p.saturation, q.value}; }
};

template <class Operation, class Pixel>
MergeRow<Pixel> PlanesRowOf(MergeForm form) {
  return form == MergeForm::Integer ? &Row<Operation, MergeForm::Integer, Pixel> : FloatRowOf<Operation, Pixel>(form);
}

// Weights of at least 0 keep 8-bit operands within the range of SmallQuotients.
template <class Choice>
MergeRow<R8> HsvRowOf(MergeForm form, const MergeWeights& w, R8) {
  const bool small = w.gainA >= 0.0f && w.gainB >= 0.0f && w.mixA >= 0.0f && w.mixB >= 0.0f;
  if (form == MergeForm::Integer || small) return PlanesRowOf<HsvMerge<SmallHsvLanes, Choice>, R8>(form);
  return FloatRowOf<HsvMerge<HsvLanes<R8>, Choice>, R8>(form);
}

template <class Choice>
MergeRow<R16> HsvRowOf(MergeForm form, const MergeWeights&, R16) {
  return PlanesRowOf<HsvMerge<HsvLanes<R16>, Choice>, R16>(form);
}

template <class Pixel>
MergeRow<Pixel> ColourRow(std::int32_t method, MergeForm form, const MergeWeights& weights) {
  switch (method) {
    case kMergeLuminance: return PlanesRowOf<Luminance<Pixel>, Pixel>(form);
    case kMergeChroma: return PlanesRowOf<Chroma<Pixel>, Pixel>(form);
    case kMergeHue: return HsvRowOf<HueChoice>(form, weights, Pixel());
    case kMergeSaturation: return HsvRowOf<SaturationChoice>(form, weights, Pixel());
    case kMergeValue: return HsvRowOf<ValueChoice>(form, weights, Pixel());
    case kMergeColour: return HsvRowOf<ColourChoice>(form, weights, Pixel());
    default: return nullptr;
  }
}

MergeRow<R8> ColourRow8(std::int32_t method, MergeForm form, const MergeWeights& weights) {
  return ColourRow<R8>(method, form, weights);
}

MergeRow<R16> ColourRow16(std::int32_t method, MergeForm form, const MergeWeights& weights) {
  return ColourRow<R16>(method, form, weights);
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur {
namespace {

HWY_EXPORT(ColourRow8);
HWY_EXPORT(ColourRow16);

}  // namespace

template <>
MergeRow<R8> colourRow<R8>(std::int32_t method, MergeForm form, const MergeWeights& weights) {
  return HWY_DYNAMIC_DISPATCH(ColourRow8)(method, form, weights);
}

template <>
MergeRow<R16> colourRow<R16>(std::int32_t method, MergeForm form, const MergeWeights& weights) {
  return HWY_DYNAMIC_DISPATCH(ColourRow16)(method, form, weights);
}

}  // namespace vblur
#endif  // HWY_ONCE
