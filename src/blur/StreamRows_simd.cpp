#include "blur/StreamRows.h"

#include <cstring>

#include "image/HvKernel.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "blur/StreamRows_simd.cpp"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

HWY_INLINE void StreamLine(const std::uint8_t* from, std::uint8_t* to) {
  const hn::CappedTag<std::uint8_t, kCacheLineBytes> d;
  for (std::size_t i = 0; i < kCacheLineBytes; i += hn::Lanes(d))
    hn::Stream(hn::LoadU(d, from + i), d, to + i);
}

void StreamRows(const StreamedPiece& piece, const std::byte* const* rows, std::byte* waiting) {
  HvEnterKernel<"streamRows", HWY_TARGETS>(HWY_TARGET);
  alignas(kCacheLineBytes) std::uint8_t line[2 * kCacheLineBytes + kMostStreamedBytes];
  for (std::int64_t i = 0; i < piece.count; ++i, waiting += kCacheLineBytes) {
    auto* const to = reinterpret_cast<std::uint8_t*>(piece.first + i * piece.stride);
    const std::size_t before = reinterpret_cast<std::uintptr_t>(to) % kCacheLineBytes;
    if (before == 0 && piece.bytes % kCacheLineBytes == 0) {
      for (std::size_t at = 0; at < piece.bytes; at += kCacheLineBytes)
        StreamLine(reinterpret_cast<const std::uint8_t*>(rows[i]) + at, to + at);
      continue;
    }
    std::memcpy(line, waiting, kCacheLineBytes);
    std::memcpy(line + before, rows[i], piece.bytes);
    const std::size_t end = before + piece.bytes;
    std::size_t at = 0;
    if (piece.begins && before > 0) {
      // The first cache line is not ours from its beginning.
      at = HWY_MIN(kCacheLineBytes, end);
      std::memcpy(to, line + before, at - before);
    }
    for (; at + kCacheLineBytes <= end; at += kCacheLineBytes)
      StreamLine(line + at, to - before + at);
    if (piece.ends) {
      if (at < end) std::memcpy(to - before + at, line + at, end - at);
    } else {
      std::memcpy(waiting, line + at, kCacheLineBytes);
    }
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur {
namespace {

HWY_EXPORT(StreamRows);

}  // namespace

void streamRows(const StreamedPiece& piece, const std::byte* const* rows, std::byte* waiting) {
  HWY_DYNAMIC_DISPATCH(StreamRows)(piece, rows, waiting);
}

}  // namespace vblur
#endif  // HWY_ONCE
