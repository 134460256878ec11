// All intrinsics of the system: instructions that Highway 1.0 does not offer. Compiled once for each instruction set,
// like the vector code that includes it; callers have a general form where HV_X86_VECTORS is 0. Gains are ms per
// megapixel of the whole filter, RGBA of 3840 x 2160, one thread.
#if defined(VBLUR_IMAGE_CPUINTRINSICS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VBLUR_IMAGE_CPUINTRINSICS_INL_H
#undef VBLUR_IMAGE_CPUINTRINSICS_INL_H
#else
#define VBLUR_IMAGE_CPUINTRINSICS_INL_H
#endif

#include <hwy/highway.h>

#undef HV_X86_VECTORS
#if HWY_ARCH_X86 && HWY_TARGET != HWY_EMU128 && HWY_TARGET != HWY_SCALAR
#define HV_X86_VECTORS 1
#else
#define HV_X86_VECTORS 0
#endif

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

#if HV_X86_VECTORS
// Within each block of 16 bytes: the 16-bit lanes of `lower`, then those of `upper`, saturated to bytes.
// Gain, 8 bits: at AVX3 0.88 -> 0.81 for radius 10 and 0.91 -> 0.83 for 62; for 33 at AVX2 1.22 -> 1.06, at SSE4
// 2.20 -> 2.06.
HWY_INLINE __m128i SaturatedToBytes(__m128i lower, __m128i upper) {
  return _mm_packus_epi16(lower, upper);
}
HWY_INLINE __m128i EvenLessOddBytes(__m128i v) {
  return _mm_maddubs_epi16(v, _mm_set1_epi16(static_cast<short>(0xFF01)));
}
#if HWY_TARGET <= HWY_AVX2
HWY_INLINE __m256i EvenLessOddBytes(__m256i v) {
  return _mm256_maddubs_epi16(v, _mm256_set1_epi16(static_cast<short>(0xFF01)));
}
HWY_INLINE __m256i SaturatedToBytes(__m256i lower, __m256i upper) {
  return _mm256_packus_epi16(lower, upper);
}
#endif
#if HWY_TARGET <= HWY_AVX3
HWY_INLINE __m512i SaturatedToBytes(__m512i lower, __m512i upper) {
  return _mm512_packus_epi16(lower, upper);
}

// Each even byte, without a sign, less the odd byte beside it.
HWY_INLINE __m512i EvenLessOddBytes(__m512i v) {
  return _mm512_maddubs_epi16(v, _mm512_set1_epi16(static_cast<short>(0xFF01)));
}

// Blocks 0 and 2 of `a` and of `b`; blocks 1 and 3.
HWY_INLINE __m512i EvenBlocks(__m512i a, __m512i b) {
  return _mm512_shuffle_i32x4(a, b, 0x88);
}
HWY_INLINE __m512i OddBlocks(__m512i a, __m512i b) {
  return _mm512_shuffle_i32x4(a, b, 0xDD);
}

// To the nearest integer, to even on a tie: Highway's conversion truncates, and has doubles alone.
HWY_INLINE __m512i RoundedToInt64(__m256 v) {
  return _mm512_cvtps_epi64(v);
}
#endif
#endif  // HV_X86_VECTORS

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#endif  // include guard
