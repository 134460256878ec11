#include "host/light/tiff/TiffInput.h"

#include <algorithm>
#include <cstring>
#include <future>
#include <thread>

#include "host/files/Sample.h"

namespace vblur::host {

namespace {

constexpr std::size_t kBytesAtOnce = std::size_t{8} << 20;
// Less is unpacked sooner by one thread.
constexpr std::size_t kBytesOfThread = std::size_t{1} << 20;

void PutFloats(const std::byte* halves, std::size_t count, std::byte* floats) {
  for (std::size_t i = 0; i < count; ++i) {
    std::uint16_t half;
    std::memcpy(&half, halves + 2 * i, sizeof half);
    const float value = FloatOfHalf(half);
    std::memcpy(floats + sizeof value * i, &value, sizeof value);
  }
}

}  // namespace

std::unique_ptr<TiffInput> TiffInput::Open(const std::filesystem::path& file) {
  auto tiff = PlainTiffOf(file);
  if (!tiff) return nullptr;
  std::unique_ptr<TiffInput> input(new TiffInput(file, *std::move(tiff)));
  TiffHandle handle = OpenTiffFile(file);
  if (!handle || (TIFFIsTiled(handle.get()) != 0) != input->IsTiled() || !input->TakeStrips(handle.get()))
    return nullptr;
  input->handles_.push_back(std::move(handle));
  return input;
}

bool TiffInput::TakeStrips(TIFF* tiff) {
  const auto width = static_cast<std::uint32_t>(tiff_.width);
  const auto height = static_cast<std::uint32_t>(tiff_.height);
  if (IsTiled()) {
    stripRows_ = tiff_.tileHeight;
    const auto across = (width - 1) / static_cast<std::uint32_t>(tiff_.tileWidth) + 1;
    const auto down = (height - 1) / static_cast<std::uint32_t>(tiff_.tileHeight) + 1;
    const std::uint64_t bytes = StoredBytes() / width * static_cast<std::uint64_t>(tiff_.tileWidth);
    return TIFFTileRowSize64(tiff) == bytes && TIFFNumberOfTiles(tiff) == across * down;
  }
  std::uint32_t rows = 0;
  if (TIFFGetFieldDefaulted(tiff, TIFFTAG_ROWSPERSTRIP, &rows) == 0 || rows == 0) return false;
  stripRows_ = static_cast<std::int32_t>(std::min(rows, height));
  const std::uint32_t strips = (height - 1) / static_cast<std::uint32_t>(stripRows_) + 1;
  return TIFFScanlineSize64(tiff) == StoredBytes() && TIFFNumberOfStrips(tiff) == strips;
}

std::int32_t TiffInput::RowsAtOnce() const {
  const std::size_t strip = RowBytes() * static_cast<std::size_t>(stripRows_);
  const std::size_t strips = std::max<std::size_t>(1, kBytesAtOnce / strip);
  const auto rows = static_cast<std::int64_t>(std::min<std::size_t>(strips, 1 << 20)) * stripRows_;
  return static_cast<std::int32_t>(std::min<std::int64_t>(rows, tiff_.height));
}

bool TiffInput::ReadStrip(TIFF* tiff, std::int32_t strip, std::int32_t rows, std::byte* given) const {
  const std::size_t bytes = StoredBytes() * static_cast<std::size_t>(rows);
  std::vector<std::byte> halves(IsOfHalves() ? bytes : 0);
  std::byte* const to = IsOfHalves() ? halves.data() : given;
  const auto read = TIFFReadEncodedStrip(tiff, static_cast<std::uint32_t>(strip), to, static_cast<tmsize_t>(bytes));
  if (read != static_cast<tmsize_t>(bytes)) return false;
  if (IsOfHalves()) PutFloats(halves.data(), bytes / 2, given);
  return true;
}

bool TiffInput::ReadTiles(TIFF* tiff, std::int32_t strip, std::int32_t rows, std::byte* given) const {
  const auto pixelBytes = StoredBytes() / static_cast<std::size_t>(tiff_.width);
  const auto givenBytes = RowBytes() / static_cast<std::size_t>(tiff_.width);
  const std::size_t tileRow = pixelBytes * static_cast<std::size_t>(tiff_.tileWidth);
  std::vector<std::byte> tile(tileRow * static_cast<std::size_t>(tiff_.tileHeight));
  const std::int32_t across = (tiff_.width - 1) / tiff_.tileWidth + 1;
  for (std::int32_t column = 0; column < across; ++column) {
    const auto number = static_cast<std::uint32_t>(strip * across + column);
    const auto size = static_cast<tmsize_t>(tile.size());
    if (TIFFReadEncodedTile(tiff, number, tile.data(), size) != size) return false;
    const std::int32_t x = column * tiff_.tileWidth;
    const auto pixels = static_cast<std::size_t>(std::min(tiff_.tileWidth, tiff_.width - x));
    for (std::int32_t row = 0; row < rows; ++row) {
      const std::byte* const from = tile.data() + tileRow * static_cast<std::size_t>(row);
      std::byte* const to =
          given + RowBytes() * static_cast<std::size_t>(row) + givenBytes * static_cast<std::size_t>(x);
      if (IsOfHalves()) {
        PutFloats(from, pixels * pixelBytes / 2, to);
      } else {
        std::memcpy(to, from, pixels * pixelBytes);
      }
    }
  }
  return true;
}

bool TiffInput::ReadStrips(TIFF* tiff, std::int32_t strip, std::int32_t end, std::int32_t firstRow,
                           std::byte* samples) const {
  for (; strip < end; ++strip) {
    const std::int32_t row = strip * stripRows_;
    const std::int32_t rows = std::min(stripRows_, tiff_.height - row);
    std::byte* const given = samples + RowBytes() * static_cast<std::size_t>(row - firstRow);
    if (!(IsTiled() ? ReadTiles(tiff, strip, rows, given) : ReadStrip(tiff, strip, rows, given))) return false;
  }
  return true;
}

bool TiffInput::ReadOnThreads(std::int32_t strip, std::int32_t end, std::int32_t firstRow, std::byte* samples) {
  const std::size_t bytes = RowBytes() * static_cast<std::size_t>(stripRows_) * static_cast<std::size_t>(end - strip);
  const auto processors = static_cast<std::size_t>(std::max(1u, std::thread::hardware_concurrency()));
  const std::size_t shares =
      std::clamp<std::size_t>(bytes / kBytesOfThread, 1, std::min(processors, static_cast<std::size_t>(end - strip)));
  while (handles_.size() < shares) {
    handles_.push_back(OpenTiffFile(file_));
    if (!handles_.back()) return false;
  }
  const auto strips = static_cast<std::size_t>(end - strip);
  const auto beginOf = [&](std::size_t share) { return strip + static_cast<std::int32_t>(strips * share / shares); };
  std::vector<std::future<bool>> others;
  for (std::size_t share = 1; share < shares; ++share) {
    // Where the system allows no thread, the calling one reads the share when it asks for it.
    others.push_back(std::async(std::launch::async | std::launch::deferred, [&, share] {
      return ReadStrips(handles_[share].get(), beginOf(share), beginOf(share + 1), firstRow, samples);
    }));
  }
  bool isRead = ReadStrips(handles_[0].get(), beginOf(0), beginOf(1), firstRow, samples);
  for (auto& other : others)
    isRead = other.get() && isRead;
  return isRead;
}

bool TiffInput::ReadRows(std::int32_t first, std::int32_t count, std::byte* samples) {
  const std::int32_t strip = first / stripRows_;
  const std::int32_t end = (first + count + stripRows_ - 1) / stripRows_;
  return ReadOnThreads(strip, end, first, samples);
}

}  // namespace vblur::host
