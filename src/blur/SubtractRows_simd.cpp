#include "blur/SubtractRows.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "image/HvKernel.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "blur/SubtractRows_simd.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

template <class D>
HWY_INLINE hn::Vec<D> Reflected(D, hn::Vec<D> a, hn::Vec<D> b) {
  if constexpr (std::is_floating_point_v<hn::TFromD<D>>) {
    // The doubling is exact.
    return hn::Sub(hn::Add(a, a), b);
  } else if constexpr (std::is_signed_v<hn::TFromD<D>>) {
    // Where the difference saturates it has the sign of a, and the sum saturates too.
    return hn::SaturatedAdd(a, hn::SaturatedSub(a, b));
  } else {
    // a + (a - b) - (b - a): one of the saturated differences is 0.
    return hn::SaturatedSub(hn::SaturatedAdd(a, hn::SaturatedSub(a, b)), hn::SaturatedSub(b, a));
  }
}

template <class D>
HWY_INLINE std::int64_t ReflectVectors(D d, const hn::TFromD<D>* a, const hn::TFromD<D>* b, std::int64_t from,
                                       std::int64_t n, hn::TFromD<D>* out) {
  const auto lanes = static_cast<std::int64_t>(hn::Lanes(d));
  for (; from + lanes <= n; from += lanes)
    hn::StoreU(Reflected(d, hn::LoadU(d, a + from), hn::LoadU(d, b + from)), d, out + from);
  return from;
}

template <class T>
HWY_INLINE void Reflect(const T* a, const T* b, std::int64_t n, T* out) {
  const std::int64_t done = ReflectVectors(hn::ScalableTag<T>(), a, b, 0, n, out);
  ReflectVectors(hn::CappedTag<T, 1>(), a, b, done, n, out);
}

void Reflect8(const std::uint8_t* a, const std::uint8_t* b, std::int64_t n, std::uint8_t* out) {
  HvEnterKernel<"reflectRow 8", HWY_TARGETS>(HWY_TARGET);
  Reflect(a, b, n, out);
}
void Reflect16(const std::int16_t* a, const std::int16_t* b, std::int64_t n, std::int16_t* out) {
  HvEnterKernel<"reflectRow 16", HWY_TARGETS>(HWY_TARGET);
  Reflect(a, b, n, out);
}
void ReflectFloats(const float* a, const float* b, std::int64_t n, float* out) {
  HvEnterKernel<"reflectRow float", HWY_TARGETS>(HWY_TARGET);
  Reflect(a, b, n, out);
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur {
namespace {

HWY_EXPORT(Reflect8);
HWY_EXPORT(Reflect16);
HWY_EXPORT(ReflectFloats);

}  // namespace

void reflectRow(const std::uint8_t* a, const std::uint8_t* b, std::int64_t n, std::uint8_t* out) {
  HWY_DYNAMIC_DISPATCH(Reflect8)(a, b, n, out);
}

void reflectRow(const std::int16_t* a, const std::int16_t* b, std::int64_t n, std::int16_t* out) {
  HWY_DYNAMIC_DISPATCH(Reflect16)(a, b, n, out);
}

void reflectRow(const float* a, const float* b, std::int64_t n, float* out) {
  HWY_DYNAMIC_DISPATCH(ReflectFloats)(a, b, n, out);
}

}  // namespace vblur
#endif  // HWY_ONCE
