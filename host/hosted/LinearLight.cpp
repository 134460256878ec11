#include "host/hosted/LinearLight.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>

#include "host/hosted/Premultiply.h"

namespace vblur::host {

namespace {

constexpr std::int32_t kOne = 16384;
constexpr std::int32_t kLastEntry = 32767;

using Table = std::array<std::int16_t, kLastEntry + 1>;

double DecodedValue(double x) {
  return x <= 0.04045 ? x / 12.92 : std::pow((x + 0.055) / 1.055, 2.4);
}

double EncodedValue(double x) {
  return x <= 0.0031308 ? x * 12.92 : 1.055 * std::pow(x, 1.0 / 2.4) - 0.055;
}

Table MakeTable(double (*function)(double)) {
  Table table{};
  for (std::int32_t i = 0; i <= kLastEntry; ++i) {
    const double value = std::floor(function(static_cast<double>(i) / kOne) * kOne + 0.5);
    table[static_cast<std::size_t>(i)] = static_cast<std::int16_t>(std::min(value, static_cast<double>(kLastEntry)));
  }
  return table;
}

const Table& LinearTable() {
  static const Table table = MakeTable(DecodedValue);
  return table;
}

const Table& EncodedTable() {
  static const Table table = MakeTable(EncodedValue);
  return table;
}

std::int16_t Mirrored(const Table& table, std::int32_t value) {
  if (value >= 0) return table[static_cast<std::size_t>(value)];
  return static_cast<std::int16_t>(-table[static_cast<std::size_t>(std::min(-value, kLastEntry))]);
}

void SendThrough(HostImage& image, const Table& table, bool premultiplied) {
  if (premultiplied) DivideByAlpha(image);
  for (std::int32_t y = 0; y < image.Height(); ++y) {
    std::byte* at = image.Row(y);
    for (std::int32_t x = 0; x < image.Width(); ++x, at += 4 * sizeof(std::int16_t)) {
      std::int16_t colours[3];
      std::memcpy(colours, at, sizeof colours);
      for (std::int16_t& colour : colours)
        colour = Mirrored(table, colour);
      std::memcpy(at, colours, sizeof colours);
    }
  }
  if (premultiplied) MultiplyByAlpha(image);
}

}  // namespace

std::int16_t LinearOf(std::int16_t encoded) {
  return Mirrored(LinearTable(), encoded);
}

std::int16_t EncodedOf(std::int16_t linear) {
  return Mirrored(EncodedTable(), linear);
}

void DecodeColours(HostImage& image, bool premultiplied) {
  SendThrough(image, LinearTable(), premultiplied);
}

void EncodeColours(HostImage& image, bool premultiplied) {
  SendThrough(image, EncodedTable(), premultiplied);
}

}  // namespace vblur::host
