#include "host/light/png/PngStretches.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include <zlib.h>

#include "host/formats/FileBytes.h"
#include "host/light/InOrder.h"
#include "host/light/png/PngRowFilter.h"

namespace vblur::host {

namespace {

// Of filtered bytes: long enough that what a new stretch costs does not show, short enough for the nearest caches.
constexpr std::size_t kStretchBytes = std::size_t{512} << 10;
// How far back zlib looks.
constexpr std::size_t kWindow = std::size_t{32} << 10;

std::int32_t RowsIn(const PngRows& rows, std::size_t bytes) {
  return static_cast<std::int32_t>(std::clamp<std::size_t>(bytes / (rows.bytes + 1), 1, 1 << 20));
}

// Rows as they are, behind the zeros that stand left of the picture. The first ones are those of the stretch before,
// for what the filters and zlib look back at.
class RawRows {
 public:
  RawRows(const PngRows& rows, std::int32_t count) : left_(rows.pixelBytes), stride_(rows.pixelBytes + rows.bytes) {
    bytes_.resize(static_cast<std::size_t>(count) * stride_);
  }
  std::uint8_t* Row(std::int32_t row) { return bytes_.data() + static_cast<std::size_t>(row) * stride_ + left_; }

 private:
  std::size_t left_;
  std::size_t stride_;
  std::vector<std::uint8_t> bytes_;
};

struct Packed {
  std::string bytes;
  std::size_t filtered = 0;  // how many they stand for
  uLong sum = 0;             // Adler-32 of these
};

class Deflater {
 public:
  explicit Deflater(int level) {
    constexpr int kRaw = -15;
    constexpr int kUsualMemory = 8;
    if (deflateInit2(&stream_, level, Z_DEFLATED, kRaw, kUsualMemory, Z_DEFAULT_STRATEGY) != Z_OK)
      throw std::bad_alloc();
  }
  ~Deflater() { deflateEnd(&stream_); }
  Deflater(const Deflater&) = delete;
  Deflater& operator=(const Deflater&) = delete;

  void LookBackAt(const std::vector<std::uint8_t>& bytes) {
    if (bytes.empty()) return;
    const std::size_t count = std::min(bytes.size(), kWindow);
    deflateSetDictionary(&stream_, bytes.data() + (bytes.size() - count), static_cast<uInt>(count));
  }

  // All of a stretch. One that is not the last ends with a whole byte.
  std::string Pack(const std::vector<std::uint8_t>& bytes, bool isLast) {
    constexpr std::size_t kOfFlush = 16;
    std::string packed(deflateBound(&stream_, static_cast<uLong>(bytes.size())) + kOfFlush, '\0');
    stream_.next_in = const_cast<Bytef*>(bytes.data());
    stream_.avail_in = static_cast<uInt>(bytes.size());
    stream_.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream_.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream_, isLast ? Z_FINISH : Z_SYNC_FLUSH);
    packed.resize(packed.size() - stream_.avail_out);
    return packed;
  }

 private:
  z_stream stream_{};
};

// `before` rows of `raw` are those of the stretch before; the first of them, or of the picture, is looked at only.
Packed PackStretch(const PngRows& rows, int level, RawRows& raw, std::int32_t before, std::int32_t count, bool isLast) {
  PngRowFilter filter(rows.bytes, rows.pixelBytes);
  const auto filtered = [&](std::int32_t first, std::int32_t end) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(static_cast<std::size_t>(end - first) * (rows.bytes + 1));
    for (std::int32_t row = first; row < end; ++row) {
      const std::uint8_t* const each = filter.Filter(raw.Row(row), raw.Row(row - 1));
      bytes.insert(bytes.end(), each, each + rows.bytes + 1);
    }
    return bytes;
  };
  Deflater deflater(level);
  deflater.LookBackAt(filtered(1, before));
  const std::vector<std::uint8_t> bytes = filtered(before, before + count);
  return {deflater.Pack(bytes, isLast), bytes.size(),
          adler32(adler32(0, nullptr, 0), bytes.data(), static_cast<uInt>(bytes.size()))};
}

// The two bytes before a deflated stream.
std::string HeadOf(int level) {
  constexpr unsigned kDeflateOf32K = 0x78;
  const unsigned strength = level < 2 ? 0u : level < 6 ? 1u : level == 6 ? 2u : 3u;
  const unsigned flags = strength << 6;
  const unsigned check = 31 - (kDeflateOf32K * 256 + flags) % 31;
  return {static_cast<char>(kDeflateOf32K), static_cast<char>(flags + check % 31)};
}

}  // namespace

bool IsLargePng(const PngRows& rows) {
  return rows.count > RowsIn(rows, kStretchBytes);
}

void PackPngRows(const PngRows& rows, int level, std::int32_t threads,
                 const std::function<void(std::int32_t row, std::byte* samples)>& make,
                 const std::function<void(const std::string& bytes)>& put) {
  const std::int32_t stretch = RowsIn(rows, kStretchBytes);
  // The rows that zlib looks back at, and the one above them.
  const std::int32_t lookedAt = RowsIn(rows, kWindow) + 2;
  uLong sum = adler32(0, nullptr, 0);
  std::string head = HeadOf(level);
  InOrder<Packed> inOrder(threads, [&](const Packed& packed) {
    sum = adler32_combine(sum, packed.sum, static_cast<z_off_t>(packed.filtered));
    put(std::exchange(head, "") + packed.bytes);
  });
  std::int32_t before = 1;
  RawRows raw(rows, before + std::min(stretch, rows.count));
  for (std::int32_t row = 0; row < rows.count;) {
    const std::int32_t count = std::min(stretch, rows.count - row);
    for (std::int32_t i = 0; i < count; ++i)
      make(row + i, reinterpret_cast<std::byte*>(raw.Row(before + i)));
    row += count;
    const std::int32_t kept = std::min(lookedAt, before + count);
    RawRows next(rows, kept + std::min(stretch, rows.count - row));
    for (std::int32_t i = 0; i < kept; ++i)
      std::memcpy(next.Row(i), raw.Row(before + count - kept + i), rows.bytes);
    inOrder.Add(
        [&rows, level, before, count, isLast = row == rows.count, filled = std::make_shared<RawRows>(std::move(raw))] {
          return PackStretch(rows, level, *filled, before, count, isLast);
        });
    raw = std::move(next);
    before = kept;
  }
  inOrder.Finish();
  put(Big32Bytes(sum));
}

}  // namespace vblur::host
