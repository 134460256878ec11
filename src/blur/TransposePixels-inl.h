// Transposes tiles of pixels: what TransposePixels_simd.cpp and other vector code share. Compiled once for each
// instruction set.
#if defined(VBLUR_BLUR_TRANSPOSEPIXELS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VBLUR_BLUR_TRANSPOSEPIXELS_INL_H
#undef VBLUR_BLUR_TRANSPOSEPIXELS_INL_H
#else
#define VBLUR_BLUR_TRANSPOSEPIXELS_INL_H
#endif

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include <hwy/highway.h>

#include "blur/TransposePixels.h"
#include "image/CpuIntrinsics-inl.h"
#include "image/Pixels.h"

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

template <class T>
HWY_INLINE T* Beside(T* line, std::int64_t bytes) {
  using Byte = std::conditional_t<std::is_const_v<T>, const std::byte, std::byte>;
  return reinterpret_cast<T*>(reinterpret_cast<Byte*>(line) + bytes);
}

// One side of the copy in memory: the first element, and bytes from one row to the next.
template <class T>
struct Side {
  T* first;
  std::int64_t bytes;
};

#if HWY_TARGET == HWY_SCALAR

template <class T>
HWY_INLINE void TransposeTile(Side<const T> from, std::int32_t rows, std::int32_t columns, Side<T> to) {
  for (std::int32_t y = 0; y < rows; ++y) {
    for (std::int32_t x = 0; x < columns; ++x)
      std::memcpy(Beside(to.first, x * to.bytes) + y, Beside(from.first, y * from.bytes) + x, sizeof(T));
  }
}

template <class T>
HWY_INLINE void IntoStrip(Side<const T> lines, std::int32_t count, std::int32_t positions, Side<T> strip) {
  TransposeTile(lines, count, positions, strip);
}

#else

template <class T>
constexpr int kSideOf = transposedSide(sizeof(T));

// Transposes each block of 128 bits by itself: kSide vectors with a row of the square in each block become as many with
// a column there, by one round of interleaving for each halving of the square.
template <class D, int kSide, class V>
HWY_INLINE void TransposeBlocks(D d, V (&v)[kSide]) {
  for (int half = 1; half < kSide; half *= 2) {
    V mixed[kSide];
    for (int i = 0; i < kSide / 2; ++i) {
      mixed[2 * i] = hn::InterleaveLower(d, v[i], v[i + kSide / 2]);
      mixed[2 * i + 1] = hn::InterleaveUpper(d, v[i], v[i + kSide / 2]);
    }
    for (int i = 0; i < kSide; ++i)
      v[i] = mixed[i];
  }
}

// A block of each of several lines, kSide lines apart.
template <class D, class T = hn::TFromD<D> >
HWY_INLINE hn::Vec<D> LoadBlocks(D d, const T* from, std::int64_t bytes) {
  if constexpr (hn::MaxLanes(D()) * sizeof(T) == 16) {
    return hn::LoadU(d, from);
  } else {
    const hn::Half<D> half;
    const T* upper = Beside(from, static_cast<std::int64_t>(hn::MaxLanes(half)) * bytes);
    return hn::Combine(d, LoadBlocks(half, upper, bytes), LoadBlocks(half, from, bytes));
  }
}

#if HV_X86_VECTORS && HWY_TARGET <= HWY_AVX3
// As many lines as a vector of 512 bits has lanes, by halves of 256 bits: an instruction in five less than by blocks.
// Returns the number of positions done.
template <class T>
HWY_INLINE std::int32_t HalvesIntoStrip(Side<const T> lines, std::int32_t positions, Side<T> strip) {
  constexpr int kSide = kSideOf<T>;
  const hn::ScalableTag<T> d;
  const hn::Half<decltype(d)> half;
  std::int32_t x = 0;
  for (; x + 2 * kSide <= positions; x += 2 * kSide) {
    hn::Vec<decltype(d)> v[2][kSide];
    for (int h = 0; h < 2; ++h) {
      for (int i = 0; i < kSide; ++i) {
        const T* const from = Beside(lines.first, (2 * h * kSide + i) * lines.bytes) + x;
        v[h][i] = hn::Combine(d, hn::LoadU(half, Beside(from, kSide * lines.bytes)), hn::LoadU(half, from));
      }
      TransposeBlocks(d, v[h]);
    }
    for (int i = 0; i < kSide; ++i) {
      using V = hn::Vec<decltype(d)>;
      hn::StoreU(V{EvenBlocks(v[0][i].raw, v[1][i].raw)}, d, Beside(strip.first, (x + i) * strip.bytes));
      hn::StoreU(V{OddBlocks(v[0][i].raw, v[1][i].raw)}, d, Beside(strip.first, (x + kSide + i) * strip.bytes));
    }
  }
  return x;
}
#endif

// As many lines as the vector has lanes: block b of vector i is from line b * kSide + i, so that a transposed vector is
// a whole row of the strip.
template <class D, class T = hn::TFromD<D> >
HWY_INLINE void VectorsIntoStrip(D d, Side<const T> lines, std::int32_t positions, Side<T> strip) {
  constexpr int kSide = kSideOf<T>;
  std::int32_t x = 0;
#if HV_X86_VECTORS && HWY_TARGET <= HWY_AVX3
  if constexpr (sizeof(T) >= 4 && hn::MaxLanes(D()) * sizeof(T) == 64) x = HalvesIntoStrip(lines, positions, strip);
#endif
  for (; x < positions; x += kSide) {
    hn::Vec<D> v[kSide];
    for (int i = 0; i < kSide; ++i)
      v[i] = LoadBlocks(d, Beside(lines.first, i * lines.bytes) + x, lines.bytes);
    TransposeBlocks(d, v);
    for (int k = 0; k < kSide; ++k)
      hn::StoreU(v[k], d, Beside(strip.first, (x + k) * strip.bytes));
  }
}

template <class D, class T = hn::TFromD<D> >
HWY_INLINE void LinesIntoStrip(D d, Side<const T> lines, std::int32_t& y, std::int32_t count, std::int32_t positions,
                               Side<T> strip) {
  constexpr auto kLanes = static_cast<std::int32_t>(hn::MaxLanes(D()));
  for (; y + kLanes <= count; y += kLanes)
    VectorsIntoStrip(d, {Beside(lines.first, y * lines.bytes), lines.bytes}, positions, {strip.first + y, strip.bytes});
}

template <class T>
HWY_INLINE void IntoStrip(Side<const T> lines, std::int32_t count, std::int32_t positions, Side<T> strip) {
  std::int32_t y = 0;
  LinesIntoStrip(hn::ScalableTag<T>(), lines, y, count, positions, strip);
  LinesIntoStrip(hn::FixedTag<T, kSideOf<T> >(), lines, y, count, positions, strip);
}

#endif  // HWY_TARGET == HWY_SCALAR

// What is done to a vector of floats on its way: nothing. `at` is its place in the row.
struct AsItIs {
  template <class D>
  HWY_INLINE hn::Vec<D> operator()(D /*d*/, hn::Vec<D> v, std::size_t /*at*/) const {
    return v;
  }
};

// Pixels of four floats, as many lines as a row of kRowBytes has pixels.
template <std::size_t kRowBytes, class Change>
HWY_INLINE void PixelsIntoStrip(Side<const Rf> lines, std::int32_t positions, Side<Rf> strip, const Change& change) {
  // At the scalar level one float; else blocks of neighbouring lines.
  const hn::CappedTag<float, HWY_TARGET == HWY_SCALAR ? 1 : kRowBytes / sizeof(float)> d;
  constexpr std::size_t kOfPixel = sizeof(Rf) / sizeof(float);
  for (std::int32_t x = 0; x < positions; ++x) {
    auto* const row = reinterpret_cast<float*>(Beside(strip.first, x * strip.bytes));
    for (std::size_t at = 0; at < kRowBytes / sizeof(float); at += hn::MaxLanes(d)) {
      const auto line = static_cast<std::int64_t>(at / kOfPixel);
      const auto* from = reinterpret_cast<const float*>(Beside(lines.first, line * lines.bytes) + x);
#if HWY_TARGET == HWY_SCALAR
      const auto v = hn::LoadU(d, from + at % kOfPixel);
#else
      const auto v = LoadBlocks(d, from, lines.bytes / static_cast<std::int64_t>(kOfPixel));
#endif
      hn::StoreU(change(d, v, at), d, row + at);
    }
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#endif  // include guard
