#include "host/light/openexr/ExrPacking.h"

#include <algorithm>

namespace vblur::host {

std::int32_t RowsPackedTogether(Imf::Compression compression) {
  constexpr std::int32_t kFew = 16;
  constexpr std::int32_t kSome = 32;
  constexpr std::int32_t kMany = 256;
  switch (compression) {
    case Imf::ZIP_COMPRESSION:
    case Imf::PXR24_COMPRESSION: return kFew;
    case Imf::PIZ_COMPRESSION:
    case Imf::B44_COMPRESSION:
    case Imf::B44A_COMPRESSION:
    case Imf::DWAA_COMPRESSION: return kSome;
    case Imf::DWAB_COMPRESSION: return kMany;
    default: return 1;
  }
}

namespace {

std::int32_t RowsOfUnit(const ExrRows& rows) {
  return rows.tileHeight > 0 ? rows.tileHeight : RowsPackedTogether(rows.compression);
}

}  // namespace

std::int32_t ThreadsFor(const ExrRows& rows, std::int32_t threads) {
  constexpr std::size_t kLarge = std::size_t{1} << 20;
  if (rows.bytes * static_cast<std::size_t>(rows.count) < kLarge) return 1;
  const std::int32_t packed = RowsOfUnit(rows);
  return std::max(1, std::min(threads, (rows.count + packed - 1) / packed));
}

std::int32_t RowsAtOnce(const ExrRows& rows, std::int32_t threads) {
  constexpr std::size_t kUsual = std::size_t{4} << 20;
  constexpr std::size_t kMost = std::size_t{64} << 20;
  const auto packed = static_cast<std::size_t>(RowsOfUnit(rows));
  const std::size_t packBytes = std::max<std::size_t>(1, packed * rows.bytes);
  // Two for each thread: while the last ones of some are at work, the others have none.
  const std::size_t forAll = 2 * static_cast<std::size_t>(threads) * packBytes;
  const std::size_t bytes = std::min(kMost, std::max(kUsual, forAll));
  const std::size_t wanted = std::max<std::size_t>(1, bytes / packBytes) * packed;
  return static_cast<std::int32_t>(std::min(wanted, static_cast<std::size_t>(rows.count)));
}

}  // namespace vblur::host
