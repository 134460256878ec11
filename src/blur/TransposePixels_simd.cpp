#include "blur/TransposePixels.h"

#include <cstddef>

#include "image/HvKernel.h"
#include "image/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "blur/TransposePixels_simd.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "blur/TransposePixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

template <class T>
Side<const T> SideOf(const void* first, std::int64_t bytes) {
  return {static_cast<const T*>(first), bytes};
}
template <class T>
Side<T> SideOf(void* first, std::int64_t bytes) {
  return {static_cast<T*>(first), bytes};
}

template <class T>
void IntoStripOf(const void* line, std::int64_t lineBytes, std::int32_t lines, std::int32_t count, void* strip,
                 std::int64_t stripBytes) {
  IntoStrip(SideOf<T>(line, lineBytes), lines, count, SideOf<T>(strip, stripBytes));
}

void Into(std::size_t pixelBytes, const void* line, std::int64_t lineBytes, std::int32_t lines, std::int32_t count,
          void* strip, std::int64_t stripBytes) {
  HvEnterKernel<"transposePixels", HWY_TARGETS>(HWY_TARGET);
  switch (pixelBytes) {
    case 1: return IntoStripOf<std::uint8_t>(line, lineBytes, lines, count, strip, stripBytes);
    case 2: return IntoStripOf<std::uint16_t>(line, lineBytes, lines, count, strip, stripBytes);
    case 4: return IntoStripOf<std::uint32_t>(line, lineBytes, lines, count, strip, stripBytes);
    default: return IntoStripOf<std::uint64_t>(line, lineBytes, lines, count, strip, stripBytes);
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur {
namespace {

HWY_EXPORT(Into);

}  // namespace

void transposeIntoStrip(std::size_t pixelBytes, const void* line, std::int64_t lineBytes, std::int32_t lines,
                        std::int32_t count, void* strip, std::int64_t stripBytes) {
  HWY_DYNAMIC_DISPATCH(Into)(pixelBytes, line, lineBytes, lines, count, strip, stripBytes);
}

}  // namespace vblur
#endif  // HWY_ONCE
