#include "blur/CarriedRows.h"

#include <bit>
#include <cstddef>

#include "blur/ExactBox.h"
#include "image/HvKernel.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "blur/CarriedRows_simd.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "blur/ExactSums-inl.h"

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

// Whole vectors from `from` on; returns where they end. `mask` has that of one component after the other.
template <class D>
HWY_INLINE std::int64_t CarryVectors(D d, float* v, std::int64_t from, std::int64_t n, const float* mask) {
  const auto lanes = static_cast<std::int64_t>(hn::Lanes(d));
  for (; from + lanes <= n; from += lanes) {
    const auto old = hn::LoadU(d, v + from);
    const auto set = hn::LoadU(d, mask + from % kCarriedMask);
    hn::StoreU(hn::Or(hn::And(set, Carried(d, old)), hn::AndNot(set, old)), d, v + from);
  }
  return from;
}

void CarryRow(float* components, std::int64_t n, const float* mask) {
  HvEnterKernel<"carryRow", HWY_TARGETS>(HWY_TARGET);
  const hn::ScalableTag<float> d;
  float masks[hn::MaxLanes(d) + kCarriedMask];
  for (std::size_t i = 0; i < hn::MaxLanes(d) + kCarriedMask; ++i)
    masks[i] = mask != nullptr ? mask[i % kCarriedMask] : std::bit_cast<float>(~std::uint32_t{0});
  const std::int64_t done = CarryVectors(d, components, 0, n, masks);
  CarryVectors(hn::CappedTag<float, 1>(), components, done, n, masks);
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur {
namespace {

HWY_EXPORT(CarryRow);

}  // namespace

void carryRow(float* components, std::int64_t n, const float* mask) {
  HWY_DYNAMIC_DISPATCH(CarryRow)(components, n, mask);
}

}  // namespace vblur
#endif  // HWY_ONCE
