// All intrinsics and assembly of the system: instructions that Highway 1.0 does not offer. Compiled once for each
// instruction set, like the vector code that includes it; callers have a general form where HV_X86_VECTORS is 0. Gains
// are ms per megapixel of the whole filter, RGBA of 3840 x 2160, one thread.
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
// Within each block of 16 bytes: the 16-bit lanes of `lower`, then those of `upper`, saturated to bytes. And bytes
// times signed bytes, neighbours added.
// Gain of the two together, 8 bits: at AVX3 1.29 -> 1.24 for radius 10 and 1.47 -> 1.39 for 62; at AVX2 2.22 -> 2.11
// for 33.
HWY_INLINE __m128i SaturatedToBytes(__m128i lower, __m128i upper) {
  return _mm_packus_epi16(lower, upper);
}
HWY_INLINE __m128i SumOfProducts(__m128i bytes, __m128i factors) {
  return _mm_maddubs_epi16(bytes, factors);
}
#if HWY_TARGET <= HWY_AVX2
HWY_INLINE __m256i SaturatedToBytes(__m256i lower, __m256i upper) {
  return _mm256_packus_epi16(lower, upper);
}
HWY_INLINE __m256i SumOfProducts(__m256i bytes, __m256i factors) {
  return _mm256_maddubs_epi16(bytes, factors);
}
#endif
#if HWY_TARGET <= HWY_AVX3
HWY_INLINE __m512i SaturatedToBytes(__m512i lower, __m512i upper) {
  return _mm512_packus_epi16(lower, upper);
}
HWY_INLINE __m512i SumOfProducts(__m512i bytes, __m512i factors) {
  return _mm512_maddubs_epi16(bytes, factors);
}
#endif

// The 32-bit sums and, of each two 16-bit lanes side by side, the two products.
template <class V32, class V16>
HWY_INLINE V32 PairProductsAdded(V32 sum, V16 a, V16 b) {
#if HWY_TARGET == HWY_AVX3_DL
  // The intrinsic needs an extension that this target does not enable; the assembler accepts the instruction.
  asm("vpdpwssd %2, %1, %0" : "+v"(sum.raw) : "v"(a.raw), "v"(b.raw));
  return sum;
#else
  using D32 = hwy::HWY_NAMESPACE::DFromV<V32>;
  V32 unused = hwy::HWY_NAMESPACE::Zero(D32());
  return hwy::HWY_NAMESPACE::ReorderWidenMulAccumulate(D32(), a, b, sum, unused);
#endif
}
#endif  // HV_X86_VECTORS

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#endif  // include guard
