#include <cstddef>
#include <cstring>
#include <type_traits>

#include "blur/TurnPixels.h"

// Vector types of a size that only the machine knows have no fixed number of blocks.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "blur/TurnPixels_simd.cpp"
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

// A square of pixels: row k of `from` becomes column k of `to`. The steps are in pixels for one side and in
// bytes for the other, so both are told in bytes.
#if HWY_TARGET == HWY_SCALAR
template <class T>
HWY_INLINE void TurnSquare(const T* from, std::int64_t fromBytes, T* to, std::int64_t toBytes) {
  constexpr int kSide = sizeof(T) == 4 ? 4 : 2;
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x)
      std::memcpy(Beside(to, x * toBytes) + y, Beside(from, y * fromBytes) + x, sizeof(T));
  }
}
#else
HWY_INLINE void TurnSquare(const std::uint32_t* from, std::int64_t fromBytes, std::uint32_t* to, std::int64_t toBytes) {
  const hn::FixedTag<std::uint32_t, 4> d;
  const hn::FixedTag<std::uint64_t, 2> d2;
  const auto a = hn::LoadU(d, from);
  const auto b = hn::LoadU(d, Beside(from, fromBytes));
  const auto c = hn::LoadU(d, Beside(from, 2 * fromBytes));
  const auto e = hn::LoadU(d, Beside(from, 3 * fromBytes));
  const auto ab01 = hn::BitCast(d2, hn::InterleaveLower(d, a, b));
  const auto ce01 = hn::BitCast(d2, hn::InterleaveLower(d, c, e));
  const auto ab23 = hn::BitCast(d2, hn::InterleaveUpper(d, a, b));
  const auto ce23 = hn::BitCast(d2, hn::InterleaveUpper(d, c, e));
  hn::StoreU(hn::BitCast(d, hn::InterleaveLower(d2, ab01, ce01)), d, to);
  hn::StoreU(hn::BitCast(d, hn::InterleaveUpper(d2, ab01, ce01)), d, Beside(to, toBytes));
  hn::StoreU(hn::BitCast(d, hn::InterleaveLower(d2, ab23, ce23)), d, Beside(to, 2 * toBytes));
  hn::StoreU(hn::BitCast(d, hn::InterleaveUpper(d2, ab23, ce23)), d, Beside(to, 3 * toBytes));
}

HWY_INLINE void TurnSquare(const std::uint64_t* from, std::int64_t fromBytes, std::uint64_t* to, std::int64_t toBytes) {
  const hn::FixedTag<std::uint64_t, 2> d;
  const auto a = hn::LoadU(d, from);
  const auto b = hn::LoadU(d, Beside(from, fromBytes));
  hn::StoreU(hn::InterleaveLower(d, a, b), d, to);
  hn::StoreU(hn::InterleaveUpper(d, a, b), d, Beside(to, toBytes));
}
#endif

template <class T>
HWY_INLINE void Turn(const T* from, std::int64_t fromBytes, std::int32_t rows, std::int32_t columns, T* to,
                     std::int64_t toBytes) {
  constexpr std::int32_t kSide = sizeof(T) == 4 ? 4 : 2;
  for (std::int32_t y = 0; y < rows; y += kSide) {
    for (std::int32_t x = 0; x < columns; x += kSide)
      TurnSquare(Beside(from, y * fromBytes) + x, fromBytes, Beside(to, x * toBytes) + y, toBytes);
  }
}

void Turn32(const std::uint32_t* from, std::int64_t fromBytes, std::int32_t rows, std::int32_t columns,
            std::uint32_t* to, std::int64_t toBytes) {
  Turn(from, fromBytes, rows, columns, to, toBytes);
}

void Turn64(const std::uint64_t* from, std::int64_t fromBytes, std::int32_t rows, std::int32_t columns,
            std::uint64_t* to, std::int64_t toBytes) {
  Turn(from, fromBytes, rows, columns, to, toBytes);
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur {
namespace {

HWY_EXPORT(Turn32);
HWY_EXPORT(Turn64);

}  // namespace

void turnIntoStrip(const std::uint32_t* line, std::int64_t lineBytes, std::int32_t lines, std::int32_t count,
                   std::uint32_t* strip, std::int32_t stripLines) {
  HWY_DYNAMIC_DISPATCH(Turn32)(line, lineBytes, lines, count, strip, std::int64_t{4} * stripLines);
}

void turnIntoStrip(const std::uint64_t* line, std::int64_t lineBytes, std::int32_t lines, std::int32_t count,
                   std::uint64_t* strip, std::int32_t stripLines) {
  HWY_DYNAMIC_DISPATCH(Turn64)(line, lineBytes, lines, count, strip, std::int64_t{8} * stripLines);
}

void turnOutOfStrip(const std::uint32_t* strip, std::int32_t stripLines, std::int32_t lines, std::int32_t count,
                    std::uint32_t* line, std::int64_t lineBytes) {
  HWY_DYNAMIC_DISPATCH(Turn32)(strip, std::int64_t{4} * stripLines, count, lines, line, lineBytes);
}

void turnOutOfStrip(const std::uint64_t* strip, std::int32_t stripLines, std::int32_t lines, std::int32_t count,
                    std::uint64_t* line, std::int64_t lineBytes) {
  HWY_DYNAMIC_DISPATCH(Turn64)(strip, std::int64_t{8} * stripLines, count, lines, line, lineBytes);
}

}  // namespace vblur
#endif  // HWY_ONCE
