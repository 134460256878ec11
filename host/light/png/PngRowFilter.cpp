#include "host/light/png/PngRowFilter.h"

#include <cstdlib>
#include <utility>

namespace vblur::host {

namespace {

// The neighbours of a byte: left of it, above it, and left above it.
std::uint8_t AverageOf(int left, int above) {
  return static_cast<std::uint8_t>((left + above) >> 1);
}

std::uint8_t PaethOf(int left, int above, int corner) {
  const int toLeft = std::abs(above - corner);
  const int toAbove = std::abs(left - corner);
  const int toCorner = std::abs(left + above - 2 * corner);
  const int notLeft = toAbove <= toCorner ? above : corner;
  return static_cast<std::uint8_t>(toLeft <= toAbove && toLeft <= toCorner ? left : notLeft);
}

// Writes the bytes less what `guess(i)` says they are. Returns the sum of their magnitudes as signed numbers.
template <class Guess>
std::uint64_t Fill(const std::uint8_t* row, std::size_t count, std::uint8_t* filtered, const Guess& guess) {
  // Short runs, whose sums fit 32 bits, are summed by vector instructions.
  constexpr std::size_t kRun = 4096;
  std::uint64_t sum = 0;
  for (std::size_t begin = 0; begin < count; begin += kRun) {
    const std::size_t end = count - begin < kRun ? count : begin + kRun;
    std::uint32_t part = 0;
    for (std::size_t i = begin; i < end; ++i) {
      const auto byte = static_cast<std::uint8_t>(row[i] - guess(i));
      filtered[i] = byte;
      part += byte < 128 ? byte : 256u - byte;
    }
    sum += part;
  }
  return sum;
}

}  // namespace

PngRowFilter::PngRowFilter(std::size_t rowBytes, std::size_t pixelBytes)
    : rowBytes_(rowBytes), pixelBytes_(pixelBytes), best_(rowBytes + 1), tried_(rowBytes + 1) {}

const std::uint8_t* PngRowFilter::Filter(const std::uint8_t* row, const std::uint8_t* above) {
  const std::uint8_t* const left = row - pixelBytes_;
  const std::uint8_t* const corner = above - pixelBytes_;
  std::uint8_t number = 0;
  best_[0] = number;
  std::uint64_t least = Fill(row, rowBytes_, best_.data() + 1, [](std::size_t) { return 0; });
  const auto attempt = [&](const auto& guess) {
    tried_[0] = ++number;
    const std::uint64_t sum = Fill(row, rowBytes_, tried_.data() + 1, guess);
    if (sum >= least) return;
    least = sum;
    std::swap(best_, tried_);
  };
  attempt([=](std::size_t i) { return left[i]; });
  attempt([=](std::size_t i) { return above[i]; });
  attempt([=](std::size_t i) { return AverageOf(left[i], above[i]); });
  attempt([=](std::size_t i) { return PaethOf(left[i], above[i], corner[i]); });
  return best_.data();
}

}  // namespace vblur::host
