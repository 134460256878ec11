#include "host/wic/TriangleFilter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace vblur::host {

namespace {

// The pixels that one pixel of the result is made of, along one axis, and their weights, which sum up to 1.
struct Taps {
  std::int32_t first = 0;
  std::vector<double> weights;
};

Taps TapsOf(std::int32_t at, std::int32_t from, std::int32_t to) {
  const double step = static_cast<double>(from) / to;
  const double reach = std::max(step, 1.0);
  const double centre = (at + 0.5) * step - 0.5;
  Taps taps;
  taps.first = static_cast<std::int32_t>(std::ceil(centre - reach));
  double sum = 0.0;
  for (std::int32_t x = taps.first; x <= centre + reach; ++x) {
    taps.weights.push_back(std::max(0.0, 1.0 - std::abs(x - centre) / reach));
    sum += taps.weights.back();
  }
  for (double& weight : taps.weights)
    weight /= sum;
  return taps;
}

std::vector<Taps> AllTaps(std::int32_t from, std::int32_t to) {
  std::vector<Taps> all;
  all.reserve(static_cast<std::size_t>(to));
  for (std::int32_t at = 0; at < to; ++at)
    all.push_back(TapsOf(at, from, to));
  return all;
}

constexpr std::size_t kComponents = 4;

template <typename Component>
void AddRow(const std::byte* row, const std::vector<Taps>& columns, std::int32_t width, double weight,
            std::vector<double>& sums) {
  const auto* pixels = reinterpret_cast<const Component*>(row);
  for (std::size_t x = 0; x < columns.size(); ++x) {
    double* const sum = sums.data() + x * kComponents;
    std::int32_t at = columns[x].first;
    for (const double tap : columns[x].weights) {
      const auto pixel = static_cast<std::size_t>(std::clamp(at++, 0, width - 1)) * kComponents;
      for (std::size_t c = 0; c < kComponents; ++c)
        sum[c] += weight * tap * static_cast<double>(pixels[pixel + c]);
    }
  }
}

template <typename Component>
Component Rounded(double value) {
  if constexpr (std::is_floating_point_v<Component>) return static_cast<Component>(value);
  return static_cast<Component>(std::lround(value));
}

template <typename Component>
void Scale(const HostImage& from, HostImage& to) {
  const auto columns = AllTaps(from.Width(), to.Width());
  const auto rows = AllTaps(from.Height(), to.Height());
  std::vector<double> sums(static_cast<std::size_t>(to.Width()) * kComponents);
  for (std::int32_t y = 0; y < to.Height(); ++y) {
    const Taps& taps = rows[static_cast<std::size_t>(y)];
    std::ranges::fill(sums, 0.0);
    std::int32_t at = taps.first;
    for (const double weight : taps.weights)
      AddRow<Component>(from.Row(std::clamp(at++, 0, from.Height() - 1)), columns, from.Width(), weight, sums);
    auto* const pixels = reinterpret_cast<Component*>(to.Row(y));
    for (std::size_t i = 0; i < sums.size(); ++i)
      pixels[i] = Rounded<Component>(sums[i]);
  }
}

}  // namespace

void ScaleByTriangles(const HostImage& from, HostImage& to) {
  if (from.Depth() == 8) {
    Scale<std::uint8_t>(from, to);
  } else if (from.Depth() == 16) {
    Scale<std::int16_t>(from, to);
  } else {
    Scale<float>(from, to);
  }
}

}  // namespace vblur::host
