#include "blur/TransposePixels.h"

#include <cstddef>
#include <cstring>
#include <type_traits>

#include "image/HvKernel.h"
#include "image/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "blur/TransposePixels_simd.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

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
void IntoStrip(Side<const T> lines, std::int32_t count, std::int32_t positions, Side<T> strip) {
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

// As many lines as the vector has lanes: block b of vector i is from line b * kSide + i, so that a transposed vector is
// a whole row of the strip.
template <class D, class T = hn::TFromD<D> >
HWY_INLINE void VectorsIntoStrip(D d, Side<const T> lines, std::int32_t positions, Side<T> strip) {
  constexpr int kSide = kSideOf<T>;
  for (std::int32_t x = 0; x < positions; x += kSide) {
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
void IntoStrip(Side<const T> lines, std::int32_t count, std::int32_t positions, Side<T> strip) {
  std::int32_t y = 0;
  LinesIntoStrip(hn::ScalableTag<T>(), lines, y, count, positions, strip);
  LinesIntoStrip(hn::FixedTag<T, kSideOf<T> >(), lines, y, count, positions, strip);
}

#endif  // HWY_TARGET == HWY_SCALAR

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
