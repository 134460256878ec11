#include "host/pictures/DpxSamples.h"

#include <cstring>

#include "host/files/Sample.h"

namespace vblur::host {

namespace {

constexpr std::uint32_t kFilled = 1;
constexpr std::size_t kInWord = 3;  // samples of 10 bits

}  // namespace

std::optional<DpxSamples> DpxSamples::Of(const std::filesystem::path& file, const DpxHeader& header,
                                         const OIIO::ImageSpec& spec) {
  const std::uint32_t bits = header.Byte(dpx::kBits);
  const auto samples = static_cast<std::size_t>(spec.width) * static_cast<std::size_t>(spec.nchannels);
  if (header.Half(dpx::kPacking) != kFilled || header.Half(dpx::kEncoding) != 0 ||
      spec.format != OIIO::TypeDesc::UINT16)
    return std::nullopt;
  const bool isMended = bits == 12 || (bits == 10 && spec.nchannels == 4 && samples % kInWord == 1);
  return isMended ? std::optional(DpxSamples(file, header, samples)) : std::nullopt;
}

DpxSamples::DpxSamples(const std::filesystem::path& file, const DpxHeader& header, std::size_t samples)
    : file_(file, std::ios::binary), header_(header), samples_(samples) {}

void DpxSamples::Mend(std::int32_t first, std::int32_t count, std::byte* samples) {
  for (std::int32_t row = first; row < first + count; ++row, samples += 2 * samples_) {
    if (header_.Byte(dpx::kBits) == 10) {
      MendLast(row, samples + 2 * (samples_ - 1));
      continue;
    }
    for (std::size_t i = 0; i < samples_; ++i) {
      std::uint16_t value;
      std::memcpy(&value, samples + 2 * i, sizeof value);
      value = sample::Spread<12>(std::uint32_t{value} >> 4);
      std::memcpy(samples + 2 * i, &value, sizeof value);
    }
  }
}

void DpxSamples::MendLast(std::int32_t row, std::byte* sample) {
  const std::size_t rowBytes = (samples_ + kInWord - 1) / kInWord * 4 + header_.Whole(dpx::kLinePadding);
  const std::size_t word = (samples_ - 1) / kInWord * 4;
  const std::string bytes =
      ReadAt(file_, static_cast<std::int64_t>(header_.Begin() + rowBytes * static_cast<std::size_t>(row) + word), 4);
  if (bytes.size() != 4) return;
  constexpr int kUppermost = 22;
  const auto number = static_cast<std::uint32_t>(header_.IsBigEndian() ? Big32(bytes, 0) : Little32(bytes, 0));
  const std::uint16_t value = sample::Spread<10>(number >> kUppermost);
  std::memcpy(sample, &value, sizeof value);
}

}  // namespace vblur::host
