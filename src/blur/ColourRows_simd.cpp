#include "blur/ColourRows.h"

#include <cstddef>
#include <cstdint>

#include "image/HvKernel.h"
#include "image/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "blur/ColourRows_simd.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// The end of a row that fills no vector.
template <class Pixel>
HWY_INLINE bool YuvOfRest(const Pixel* in, std::int32_t done, std::int32_t n, Pixel* out) {
  const HvPixelRun<Pixel> rest{in + done, 1, n - done, true};
  return yuvRowPlain<Pixel::kMax>(out + done, rest, n - done);
}

template <class Pixel>
HWY_INLINE void RgbOfRest(const Pixel* in, std::int32_t done, std::int32_t n, Pixel* out) {
  const HvPixelRun<Pixel> rest{in + done, 1, n - done, true};
  rgbRowPlain<Pixel::kMax>(out + done, rest, n - done);
}

#if HWY_TARGET == HWY_SCALAR

bool Yuv8(const R8* in, std::int32_t n, R8* out) {
  HvEnterKernel<"yuvRow 8", HWY_TARGETS>(HWY_TARGET);
  return YuvOfRest(in, 0, n, out);
}
bool Yuv16(const R16* in, std::int32_t n, R16* out) {
  HvEnterKernel<"yuvRow 16", HWY_TARGETS>(HWY_TARGET);
  return YuvOfRest(in, 0, n, out);
}
void Rgb8(const R8* in, std::int32_t n, R8* out) {
  HvEnterKernel<"rgbRow 8", HWY_TARGETS>(HWY_TARGET);
  RgbOfRest(in, 0, n, out);
}
void Rgb16(const R16* in, std::int32_t n, R16* out) {
  HvEnterKernel<"rgbRow 16", HWY_TARGETS>(HWY_TARGET);
  RgbOfRest(in, 0, n, out);
}

#else

// One 32-bit lane for each pixel.
using D = hn::ScalableTag<std::int32_t>;
using V = hn::Vec<D>;

HWY_INLINE V Set(std::uint32_t value) {
  return hn::BitCast(D(), hn::Set(hn::RebindToUnsigned<D>(), value));
}

// Two 16-bit numbers in one lane.
HWY_INLINE V Pair(std::int32_t low, std::int32_t high) {
  return Set((static_cast<std::uint32_t>(high) << 16) | (static_cast<std::uint32_t>(low) & 0xFFFF));
}

// sum + a.low * b.low + a.high * b.high.
HWY_INLINE V AddProducts(V sum, V a, V b) {
#if HWY_ARCH_X86 && HWY_TARGET != HWY_EMU128
  // Other architectures may add the two products into different lanes.
  const hn::Repartition<std::int16_t, D> d16;
  V none = hn::Zero(D());
  return hn::ReorderWidenMulAccumulate(D(), hn::BitCast(d16, a), hn::BitCast(d16, b), sum, none);
#else
  const auto low = [](V v) { return hn::ShiftRight<16>(hn::ShiftLeft<16>(v)); };
  const auto high = [](V v) { return hn::ShiftRight<16>(v); };
  return hn::Add(sum, hn::Add(hn::Mul(low(a), low(b)), hn::Mul(high(a), high(b))));
#endif
}

// The weights of one row of the conversion, for two pairs of components, and Max in the scale of the weights.
struct Weights {
  // For sums of at least zero.
  HWY_INLINE V Held(V a, V b) const { return hn::ShiftRight<13>(Sum(a, b)); }
  // For any sum: halved toward zero.
  HWY_INLINE V HeldTowardZero(V a, V b) const {
    const V value = hn::ShiftRight<12>(Sum(a, b));
    return hn::ShiftRight<1>(hn::Sub(value, hn::ShiftRight<31>(value)));
  }
  HWY_INLINE V Sum(V a, V b) const { return AddProducts(AddProducts(max, a, first), b, second); }

  V first;
  V second;
  V max;
};

// A mask makes red and blue of an 8-bit pixel a pair, and a shift green and alpha.
bool Yuv8(const R8* in, std::int32_t n, R8* out) {
  HvEnterKernel<"yuvRow 8", HWY_TARGETS>(HWY_TARGET);
  const V max = Set(255 * 4096);
  const auto weights = [max](const RgbWeights<std::int32_t>& w) HWY_ATTR {
    return Weights{Pair(w.red, w.blue), Pair(w.green, 0), max};
  };
  const Weights toY = weights(kRgbToY);
  const Weights toU = weights(kRgbToU);
  const Weights toV = weights(kRgbToV);
  const V odd = Set(0x00FF00FF);
  const V alpha = Set(0xFF000000);
  const auto* from = reinterpret_cast<const std::int32_t*>(in);
  auto* to = reinterpret_cast<std::int32_t*>(out);
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(D()));
  std::int32_t i = 0;
  for (; i + lanes <= n; i += lanes) {
    const V pixels = hn::LoadU(D(), from + i);
    const V rb = hn::And(pixels, odd);
    const V ga = hn::And(hn::ShiftRight<8>(pixels), odd);
    const V y = toY.Held(rb, ga);
    const V u = hn::ShiftLeft<8>(toU.Held(rb, ga));
    const V v = hn::ShiftLeft<16>(toV.Held(rb, ga));
    hn::StoreU(hn::Or(hn::Or(y, u), hn::Or(v, hn::And(pixels, alpha))), D(), to + i);
  }
  return YuvOfRest(in, i, n, out);
}

// 16-bit pixels fill two lanes each: two vectors of them become one of red and green and one of blue and alpha.
struct Split {
  using Wide = hn::Repartition<std::uint64_t, D>;

  static HWY_INLINE V Up(V v) { return hn::BitCast(D(), hn::ShiftLeft<32>(hn::BitCast(Wide(), v))); }
  static HWY_INLINE V Down(V v) { return hn::BitCast(D(), hn::ShiftRight<32>(hn::BitCast(Wide(), v))); }

  static HWY_INLINE Split Load(const std::int32_t* p) {
    const V a = hn::LoadU(D(), p);
    const V b = hn::LoadU(D(), p + hn::Lanes(D()));
    return {hn::OddEven(Up(b), a), hn::OddEven(b, Down(a))};
  }
  HWY_INLINE void Store(std::int32_t* p) const {
    hn::StoreU(hn::OddEven(Up(ba), rg), D(), p);
    hn::StoreU(hn::OddEven(ba, Down(rg)), D(), p + hn::Lanes(D()));
  }

  V rg;
  V ba;
};

bool Yuv16(const R16* in, std::int32_t n, R16* out) {
  HvEnterKernel<"yuvRow 16", HWY_TARGETS>(HWY_TARGET);
  const V max = Set(32767 * 4096);
  const auto weights = [max](const RgbWeights<std::int32_t>& w) HWY_ATTR {
    return Weights{Pair(w.red, w.green), Pair(w.blue, 0), max};
  };
  const Weights toY = weights(kRgbToY);
  const Weights toU = weights(kRgbToU);
  const Weights toV = weights(kRgbToV);
  const V low = Set(0x0000FFFF);
  const auto* from = reinterpret_cast<const std::int32_t*>(in);
  auto* to = reinterpret_cast<std::int32_t*>(out);
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(D()));
  V most = hn::Zero(D());
  std::int32_t i = 0;
  for (; i + lanes <= n; i += lanes) {
    const Split pixels = Split::Load(from + 2 * i);
    const V y = toY.Held(pixels.rg, pixels.ba);
    const V u = toU.Held(pixels.rg, pixels.ba);
    const V v = toV.HeldTowardZero(pixels.rg, pixels.ba);
    most = hn::Max(most, v);
    const Split yuv{hn::Or(y, hn::ShiftLeft<16>(u)), hn::Or(hn::And(v, low), hn::AndNot(low, pixels.ba))};
    yuv.Store(to + 2 * i);
  }
  const bool allFit = hn::AllFalse(D(), hn::Gt(most, Set(32767)));
  return YuvOfRest(in, i, n, out) && allFit;
}

struct Rgb {
  V red;
  V green;
  V blue;
};

// From twice the stored values, with the operations of rgbFromYuv in their order. Limits are whole numbers, so that
// they may follow the truncation, which is far from the ends of 32 bits.
HWY_INLINE Rgb RgbOf(V twiceY, V twiceU, V twiceV, V max) {
  const hn::RebindToFloat<D> df;
  const auto y = hn::ConvertTo(df, hn::Sub(twiceY, max));
  const auto u = hn::ConvertTo(df, hn::Sub(twiceU, max));
  const auto v = hn::ConvertTo(df, hn::Sub(twiceV, max));
  const auto times = [df](auto value, float weight) { return hn::Mul(value, hn::Set(df, weight)); };
  const auto stored = [max](auto value) { return hn::Min(hn::Max(hn::ConvertTo(D(), value), hn::Zero(D())), max); };
  return {stored(hn::Add(hn::Add(times(u, kYuvToRed.u), times(y, kYuvToRed.y)), times(v, kYuvToRed.v))),
          stored(hn::Sub(hn::Sub(times(y, kYuvToGreen.y), times(u, kYuvToGreen.u)), times(v, kYuvToGreen.v))),
          stored(hn::Sub(hn::Add(times(u, kYuvToBlue.u), times(y, kYuvToBlue.y)), times(v, kYuvToBlue.v)))};
}

void Rgb8(const R8* in, std::int32_t n, R8* out) {
  HvEnterKernel<"rgbRow 8", HWY_TARGETS>(HWY_TARGET);
  const V max = Set(255);
  const V twice = Set(2 * 255);
  const V alpha = Set(0xFF000000);
  const auto* from = reinterpret_cast<const std::int32_t*>(in);
  auto* to = reinterpret_cast<std::int32_t*>(out);
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(D()));
  std::int32_t i = 0;
  for (; i + lanes <= n; i += lanes) {
    const V pixels = hn::LoadU(D(), from + i);
    const Rgb rgb = RgbOf(hn::And(hn::ShiftLeft<1>(pixels), twice), hn::And(hn::ShiftRight<7>(pixels), twice),
                          hn::And(hn::ShiftRight<15>(pixels), twice), max);
    hn::StoreU(hn::Or(hn::Or(rgb.red, hn::ShiftLeft<8>(rgb.green)),
                      hn::Or(hn::ShiftLeft<16>(rgb.blue), hn::And(pixels, alpha))),
               D(), to + i);
  }
  RgbOfRest(in, i, n, out);
}

void Rgb16(const R16* in, std::int32_t n, R16* out) {
  HvEnterKernel<"rgbRow 16", HWY_TARGETS>(HWY_TARGET);
  const V max = Set(32767);
  const V high = Set(0xFFFF0000);
  const auto* from = reinterpret_cast<const std::int32_t*>(in);
  auto* to = reinterpret_cast<std::int32_t*>(out);
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(D()));
  // Sign-extended.
  const auto twiceLow = [](V pair) { return hn::ShiftRight<15>(hn::ShiftLeft<16>(pair)); };
  const auto twiceHigh = [high](V pair) { return hn::ShiftRight<15>(hn::And(pair, high)); };
  std::int32_t i = 0;
  for (; i + lanes <= n; i += lanes) {
    const Split pixels = Split::Load(from + 2 * i);
    const Rgb rgb = RgbOf(twiceLow(pixels.rg), twiceHigh(pixels.rg), twiceLow(pixels.ba), max);
    const Split result{hn::Or(rgb.red, hn::ShiftLeft<16>(rgb.green)), hn::Or(rgb.blue, hn::And(pixels.ba, high))};
    result.Store(to + 2 * i);
  }
  RgbOfRest(in, i, n, out);
}

#endif  // HWY_SCALAR

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur {
namespace {

HWY_EXPORT(Yuv8);
HWY_EXPORT(Yuv16);
HWY_EXPORT(Rgb8);
HWY_EXPORT(Rgb16);

}  // namespace

bool yuvRow(const R8* in, std::int32_t n, R8* out) {
  return HWY_DYNAMIC_DISPATCH(Yuv8)(in, n, out);
}

bool yuvRow(const R16* in, std::int32_t n, R16* out) {
  return HWY_DYNAMIC_DISPATCH(Yuv16)(in, n, out);
}

void rgbRow(const R8* in, std::int32_t n, R8* out) {
  HWY_DYNAMIC_DISPATCH(Rgb8)(in, n, out);
}

void rgbRow(const R16* in, std::int32_t n, R16* out) {
  HWY_DYNAMIC_DISPATCH(Rgb16)(in, n, out);
}

}  // namespace vblur
#endif  // HWY_ONCE
