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

struct CarriedSoFar {
  std::int64_t n = 0;
  bool large = false;
};

// Whole vectors from `so.n` on. `mask` has that of one component after the other.
template <class D>
HWY_INLINE CarriedSoFar CarryVectors(D d, CarriedSoFar so, float* v, std::int64_t n, const float* mask) {
  const auto lanes = static_cast<std::int64_t>(hn::Lanes(d));
  auto most = hn::Zero(d);
  for (; so.n + lanes <= n; so.n += lanes) {
    const auto old = hn::LoadU(d, v + so.n);
    const auto set = hn::LoadU(d, mask + so.n % kCarriedMask);
    const auto made = hn::And(set, Carried(d, old));
    most = hn::Max(most, hn::Abs(made));
    hn::StoreU(hn::Or(made, hn::AndNot(set, old)), d, v + so.n);
  }
  so.large = so.large || !hn::AllFalse(d, hn::Gt(most, hn::Set(d, kMostInDoubles)));
  return so;
}

bool CarryRow(float* components, std::int64_t n, const float* mask) {
  HvEnterKernel<"carryRow", HWY_TARGETS>(HWY_TARGET);
  const hn::ScalableTag<float> d;
  float masks[hn::MaxLanes(d) + kCarriedMask];
  for (std::size_t i = 0; i < hn::MaxLanes(d) + kCarriedMask; ++i)
    masks[i] = mask != nullptr ? mask[i % kCarriedMask] : std::bit_cast<float>(~std::uint32_t{0});
  const CarriedSoFar vectors = CarryVectors(d, {}, components, n, masks);
  return CarryVectors(hn::CappedTag<float, 1>(), vectors, components, n, masks).large;
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur {
namespace {

HWY_EXPORT(CarryRow);

}  // namespace

bool carryRow(float* components, std::int64_t n, const float* mask) {
  return HWY_DYNAMIC_DISPATCH(CarryRow)(components, n, mask);
}

}  // namespace vblur
#endif  // HWY_ONCE
