#include "blur/ChannelRows.h"

#include <cstddef>
#include <cstdint>

#include "image/HvKernel.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "blur/ChannelRows_simd.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

template <int Channel, class Pixel, class Single>
HWY_INLINE void Extract(const Pixel* in, std::int32_t n, Single* out) {
  using Component = ComponentOf<Pixel>;
  const hn::ScalableTag<Component> d;
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(d));
  std::int32_t i = 0;
  for (; i + lanes <= n; i += lanes) {
    hn::Vec<decltype(d)> components[4];
    hn::LoadInterleaved4(d, reinterpret_cast<const Component*>(in + i), components[0], components[1], components[2],
                         components[3]);
    hn::StoreU(components[Channel], d, reinterpret_cast<Component*>(out + i));
  }
  extractRowPlain<Channel>(out + i, HvPixelRun<Pixel>{in + i, 1, n - i, true}, n - i);
}

template <class Pixel, class Single>
HWY_INLINE void ExtractAny(const Pixel* in, int channel, std::int32_t n, Single* out) {
  switch (channel) {
    case 0: return Extract<0>(in, n, out);
    case 1: return Extract<1>(in, n, out);
    case 2: return Extract<2>(in, n, out);
    default: return Extract<3>(in, n, out);
  }
}

template <class Single, class Pixel>
HWY_INLINE void SpreadOver(const Single* in, const Spread& how, std::int32_t n, Pixel* out) {
  using Component = ComponentOf<Pixel>;
  const hn::ScalableTag<Component> d;
  const auto max = hn::Set(d, static_cast<Component>(Pixel::kMax));
  const auto lanes = static_cast<std::int32_t>(hn::Lanes(d));
  std::int32_t i = 0;
  for (; i + lanes <= n; i += lanes) {
    auto value = hn::LoadU(d, reinterpret_cast<const Component*>(in + i));
    if (how.threshold) value = hn::IfThenZeroElse(hn::Eq(value, hn::Zero(d)), max);
    hn::StoreInterleaved4(value, value, value, how.opaque ? max : value, d, reinterpret_cast<Component*>(out + i));
  }
  spreadRowPlain<Pixel::kMax>(out + i, HvPixelRun<Single>{in + i, 1, n - i, true}, how, n - i);
}

void Extract8(const R8* in, int channel, std::int32_t n, C8* out) {
  HvEnterKernel<"extractRow 8", HWY_TARGETS>(HWY_TARGET);
  ExtractAny(in, channel, n, out);
}
void Extract16(const R16* in, int channel, std::int32_t n, C16* out) {
  HvEnterKernel<"extractRow 16", HWY_TARGETS>(HWY_TARGET);
  ExtractAny(in, channel, n, out);
}
void Spread8(const C8* in, const Spread& how, std::int32_t n, R8* out) {
  HvEnterKernel<"spreadRow 8", HWY_TARGETS>(HWY_TARGET);
  SpreadOver(in, how, n, out);
}
void Spread16(const C16* in, const Spread& how, std::int32_t n, R16* out) {
  HvEnterKernel<"spreadRow 16", HWY_TARGETS>(HWY_TARGET);
  SpreadOver(in, how, n, out);
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur {
namespace {

HWY_EXPORT(Extract8);
HWY_EXPORT(Extract16);
HWY_EXPORT(Spread8);
HWY_EXPORT(Spread16);

}  // namespace

void extractRow(const R8* in, int channel, std::int32_t n, C8* out) {
  HWY_DYNAMIC_DISPATCH(Extract8)(in, channel, n, out);
}

void extractRow(const R16* in, int channel, std::int32_t n, C16* out) {
  HWY_DYNAMIC_DISPATCH(Extract16)(in, channel, n, out);
}

void spreadRow(const C8* in, const Spread& how, std::int32_t n, R8* out) {
  HWY_DYNAMIC_DISPATCH(Spread8)(in, how, n, out);
}

void spreadRow(const C16* in, const Spread& how, std::int32_t n, R16* out) {
  HWY_DYNAMIC_DISPATCH(Spread16)(in, how, n, out);
}

}  // namespace vblur
#endif  // HWY_ONCE
