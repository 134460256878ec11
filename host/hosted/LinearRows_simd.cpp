#include "host/hosted/LinearRows.h"

#include "host/hosted/LinearCurve.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "host/hosted/LinearRows_simd.cpp"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

// The plain functions, compiled for each instruction set: the compiler puts neighbouring components into lanes.
HWY_BEFORE_NAMESPACE();
namespace vblur::host {
namespace HWY_NAMESPACE {

// Alpha goes through the curve, too, and stays: lanes are filled without gaps. Flattened, or the compiler would call
// functions for each component.
template <class Curve>
[[gnu::flatten]] void SendPixels(float* pixels, std::int32_t count) {
  constexpr std::int32_t kAlpha = 3;
  for (std::int32_t i = 0; i < 4 * count; ++i)
    pixels[i] = i % 4 == kAlpha ? pixels[i] : SentThrough<Curve>(pixels[i]);
}

void DecodePixels(float* pixels, std::int32_t count) {
  SendPixels<Decoding>(pixels, count);
}

void EncodePixels(float* pixels, std::int32_t count) {
  SendPixels<Encoding>(pixels, count);
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur::host
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur::host {

HWY_EXPORT(DecodePixels);
HWY_EXPORT(EncodePixels);

void DecodePixels(float* pixels, std::int32_t count) {
  HWY_DYNAMIC_DISPATCH(DecodePixels)(pixels, count);
}

void EncodePixels(float* pixels, std::int32_t count) {
  HWY_DYNAMIC_DISPATCH(EncodePixels)(pixels, count);
}

}  // namespace vblur::host
#endif
