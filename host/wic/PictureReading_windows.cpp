#include "host/wic/PictureReading.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <new>
#include <stdexcept>
#include <utility>

#include "host/base/Failure.h"
#include "host/base/LongPath.h"
#include "host/files/StandardInput.h"
#include "host/formats/FileAttributes.h"
#include "host/wic/OpenedPicture.h"

namespace vblur::host {

namespace {

constexpr std::size_t kPlaces = 4;

// One channel of a pixel out of a sample of fewer than 8 bits, the upper ones first.
std::uint32_t PackedAt(const std::byte* row, std::size_t x, std::int32_t bits) {
  const std::size_t at = x * static_cast<std::size_t>(bits);
  const auto shift = static_cast<unsigned>(8 - static_cast<int>(at % 8) - bits);
  return std::to_integer<std::uint32_t>(row[at / 8]) >> shift & ((1u << bits) - 1);
}

// Red, green or blue of four inks, of which 255 is all.
std::byte OfInks(std::byte ink, std::byte black) {
  const auto left = [](std::byte of) { return 255u - std::to_integer<std::uint32_t>(of); };
  return static_cast<std::byte>(sample::Quotient(left(ink) * left(black), 255u));
}

// Each as 8 bits, its upper bits again below them.
void PutPacked(std::uint32_t pixel, bool hasMoreGreen, std::byte* to) {
  const std::uint32_t greenBits = hasMoreGreen ? 6 : 5;
  const auto part = [&](std::uint32_t from, std::uint32_t bits) {
    const std::uint32_t value = pixel >> from & ((1u << bits) - 1);
    return static_cast<std::byte>(value << (8 - bits) | value >> (2 * bits - 8));
  };
  to[0] = part(5 + greenBits, 5);
  to[1] = part(5, greenBits);
  to[2] = part(0, 5);
  to[3] = std::byte{255};
}

class WicPicture final : public PictureSource {
 public:
  WicPicture(const std::filesystem::path& path, const ReadChoice& choice)
      : path_(path), opened_(OpenPictureFile(path, choice)) {}

  const PictureInfo& Info() const override { return opened_.metadata.info; }
  std::int32_t RowsAtOnce() const override;
  void ReadRows(std::int32_t first, std::int32_t count, std::byte* samples) override;
  ReadPicture Facts() override {
    return {Info(), std::make_shared<PictureMetadata>(opened_.metadata), opened_.metadata.associatedAlpha, {}};
  }

 private:
  std::size_t Width() const { return static_cast<std::size_t>(Info().data.width); }
  void CopyRows(std::int32_t first, std::int32_t count);
  // A row of the file as pixels of whole bytes, in the channels of `form_`.
  const std::byte* Unpacked(const std::byte* row);
  void PutRow(const std::byte* row, std::byte* samples) const;
  // The place of a channel of the file among those of a pixel in memory.
  std::size_t PlaceOf(int channel) const;

  std::filesystem::path path_;
  OpenedPicture opened_;
  std::vector<std::byte> stored_;
  std::vector<std::byte> unpacked_;
};

std::int32_t WicPicture::RowsAtOnce() const {
  constexpr std::size_t kBytes = std::size_t{16} << 20;
  constexpr std::int32_t kStrip = 64;
  const std::int32_t strip = std::max(kStrip, Info().tileHeight);
  const auto rows = static_cast<std::int32_t>(
      std::min<std::size_t>(kBytes / std::max<std::size_t>(1, opened_.form.RowBytes(Width())), std::size_t{1} << 20));
  const std::int64_t whole = std::int64_t{std::max(1, rows / strip)} * strip;
  return static_cast<std::int32_t>(std::min<std::int64_t>(whole, Info().data.height));
}

void WicPicture::CopyRows(std::int32_t first, std::int32_t count) {
  const std::size_t rowBytes = opened_.form.RowBytes(Width());
  try {
    stored_.resize(rowBytes * static_cast<std::size_t>(count));
  } catch (const std::bad_alloc&) {
    RefuseToRead(path_, "not enough memory for its pixels");
  }
  const WICRect rows{0, first, Info().data.width, count};
  const ::HRESULT result = opened_.frame->CopyPixels(
      &rows, static_cast<UINT>(rowBytes), static_cast<UINT>(stored_.size()), reinterpret_cast<BYTE*>(stored_.data()));
  if (FAILED(result)) RefusePixels(path_, opened_.metadata.header, result);
  if (opened_.turnsValues) std::ranges::transform(stored_, stored_.begin(), std::bit_not<>());
  for (std::size_t at = 0; opened_.swapsBytes && at < stored_.size(); at += 2)
    std::swap(stored_[at], stored_[at + 1]);
}

const std::byte* WicPicture::Unpacked(const std::byte* row) {
  const PixelForm& form = opened_.form;
  const bool isPalette = form.model == ColourModel::Palette;
  if (form.bits >= 8 && !isPalette && !form.IsPacked() && form.model != ColourModel::Inks) return row;
  unpacked_.resize(Width() * kPlaces);
  for (std::size_t x = 0; x < Width(); ++x) {
    std::byte* const to = unpacked_.data() + x * kPlaces;
    if (form.model == ColourModel::Inks) {
      const std::byte* const inks = row + x * kPlaces;
      for (std::size_t c = 0; c < 3; ++c)
        to[c] = OfInks(inks[c], inks[3]);
      continue;
    }
    if (form.IsPacked()) {
      const auto byte = [&](std::size_t at) { return std::to_integer<std::uint32_t>(row[2 * x + at]); };
      PutPacked(byte(0) | byte(1) << 8, form.model == ColourModel::Packed565, to);
      continue;
    }
    const std::uint32_t value = form.bits == 8 ? std::to_integer<std::uint32_t>(row[x]) : PackedAt(row, x, form.bits);
    // Beyond the palette: opaque black.
    const std::uint32_t grey = value * (255u / ((1u << form.bits) - 1));
    const std::uint32_t colour = !isPalette                       ? 0xff000000u | grey * 0x010101u
                                 : value < opened_.palette.size() ? opened_.palette[value]
                                                                  : 0xff000000u;
    for (std::size_t c = 0; c < 3; ++c)
      to[c] = static_cast<std::byte>(colour >> (16 - 8 * c) & 0xffu);
    to[3] = static_cast<std::byte>(colour >> 24);
  }
  return unpacked_.data();
}

std::size_t WicPicture::PlaceOf(int channel) const {
  const auto names = Info().all.size();
  const bool isGrey = names <= 2;
  const bool isAlpha = (isGrey && channel == 1) || channel == 3;
  const auto place = isAlpha ? std::size_t{3} : static_cast<std::size_t>(isGrey ? 0 : channel);
  if (!unpacked_.empty()) return place;
  // Of a file whose codec says that its fourth byte means nothing.
  const int at = opened_.form.places[place];
  return static_cast<std::size_t>(at < 0 ? 3 : at);
}

void WicPicture::PutRow(const std::byte* row, std::byte* samples) const {
  const TakenChannels taken = Info().Taken();
  const std::size_t bytes = SampleBytes(Info().samples);
  const std::size_t pixel = unpacked_.empty() ? opened_.form.PixelBytes() : kPlaces;
  for (int c = 0; c < taken.count; ++c) {
    const std::byte* from = row + PlaceOf(taken.first + c) * bytes;
    std::byte* to = samples + static_cast<std::size_t>(c) * bytes;
    const std::size_t stride = static_cast<std::size_t>(taken.count) * bytes;
    for (std::size_t x = 0; x < Width(); ++x, from += pixel, to += stride)
      std::memcpy(to, from, bytes);
  }
}

void WicPicture::ReadRows(std::int32_t first, std::int32_t count, std::byte* samples) {
  CopyRows(first, count);
  const std::size_t rowBytes = opened_.form.RowBytes(Width());
  const std::size_t samplesBytes =
      Width() * static_cast<std::size_t>(Info().Taken().count) * SampleBytes(Info().samples);
  for (std::int32_t row = 0; row < count; ++row) {
    const auto at = static_cast<std::size_t>(row);
    PutRow(Unpacked(stored_.data() + at * rowBytes), samples + at * samplesBytes);
  }
}

}  // namespace

std::unique_ptr<PictureSource> OpenForReading(const std::filesystem::path& path, const ReadChoice& choice) {
  return std::make_unique<WicPicture>(path, choice);
}

PictureReport DescribeFile(const std::filesystem::path& path, const ReadChoice& choice) try {
  const PictureMetadata metadata = OpenPictureFile(path, choice).metadata;
  PictureReport report = DescribePicture(metadata);
  report.attributes = ReadFileAttributes(ExtendedPath(FileToOpen(path)), metadata.header.format, metadata.info.exif);
  return report;
} catch (const Failure&) {
  throw;
} catch (const std::runtime_error& error) {
  // Of what codecs would write.
  RefuseToRead(path, error.what());
}

}  // namespace vblur::host
