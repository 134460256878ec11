#include "host/studies/KernelMeasure.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vblur::host {

namespace {

// Rows of a profile's picture; each has four edges, one a component.
constexpr std::int32_t kProfileRows = KernelProfile::kEdges / 4;
constexpr std::int32_t kMostCells = 81;

// The two levels of one edge. Those of whole numbers have no common period, so that rounding errors differ.
struct Levels {
  double low = 0.0;
  double high = 0.0;
};

Levels LevelsOf(std::int32_t depth, std::int32_t number) {
  if (depth == 32) return {0.0, 1.0};
  if (depth == 8) return {static_cast<double>(number * 7 % 61), static_cast<double>(255 - number * 13 % 59)};
  return {static_cast<double>(-32768 + number * 137 % 1009), static_cast<double>(32767 - number * 211 % 997)};
}

Job KernelJob(double blur, double aspect) {
  Job job;
  job.kind = EffectKind::Filter;
  job.properties.Set(PropertyOf(PropertyId::Blur).guid, blur);
  job.properties.Set(PropertyOf(PropertyId::Aspect).guid, aspect);
  // Repeat, so that an edge has no end.
  job.properties.Set(PropertyOf(PropertyId::XEdgeMethod).guid, 1.0);
  job.properties.Set(PropertyOf(PropertyId::YEdgeMethod).guid, 1.0);
  return job;
}

// 8 bits need many corners; as many as about a second allows.
std::int32_t CornersFor(std::int32_t depth, std::int32_t side) {
  if (depth != 8) return 16;
  return side < 300 ? 512 : 64;
}

// Three boxes, each of the whole radius, the fraction's tap and one to spare.
std::int32_t ReachOf(double blur) {
  return static_cast<std::int32_t>(std::ceil(blur)) + 4;
}

template <typename Component>
void SetAs(std::byte* row, std::size_t index, double value) {
  reinterpret_cast<Component*>(row)[index] = static_cast<Component>(value);
}

template <typename Component>
double GetAs(const std::byte* row, std::size_t index) {
  return static_cast<double>(reinterpret_cast<const Component*>(row)[index]);
}

std::size_t IndexOf(std::int32_t x, std::int32_t c) {
  return static_cast<std::size_t>(x) * 4 + static_cast<std::size_t>(c);
}

void SetComponent(HostImage& image, std::int32_t x, std::int32_t y, std::int32_t c, double value) {
  if (image.Depth() == 8) return SetAs<std::uint8_t>(image.Row(y), IndexOf(x, c), value);
  if (image.Depth() == 16) return SetAs<std::int16_t>(image.Row(y), IndexOf(x, c), value);
  SetAs<float>(image.Row(y), IndexOf(x, c), value);
}

double ComponentAt(const HostImage& image, std::int32_t x, std::int32_t y, std::int32_t c) {
  if (image.Depth() == 8) return GetAs<std::uint8_t>(image.Row(y), IndexOf(x, c));
  if (image.Depth() == 16) return GetAs<std::int16_t>(image.Row(y), IndexOf(x, c));
  return GetAs<float>(image.Row(y), IndexOf(x, c));
}

// Draws a picture whose components are at their high level where `isHigh` is true, else at their low one; each has its
// own levels. Returns the sum of all heights.
template <typename IsHigh, typename NumberOf>
double DrawEdges(HostImage& image, IsHigh isHigh, NumberOf numberOf) {
  double heights = 0.0;
  for (std::int32_t y = 0; y < image.Height(); ++y) {
    for (std::int32_t c = 0; c < 4; ++c) {
      const Levels levels = LevelsOf(image.Depth(), numberOf(y, c));
      heights += levels.high - levels.low;
      for (std::int32_t x = 0; x < image.Width(); ++x)
        SetComponent(image, x, y, c, isHigh(x, y) ? levels.high : levels.low);
    }
  }
  return heights;
}

double SumOfComponents(const HostImage& image, std::int32_t x, std::int32_t y) {
  double sum = 0.0;
  for (std::int32_t c = 0; c < 4; ++c)
    sum += ComponentAt(image, x, y, c);
  return sum;
}

// Every other edge of a profile falls, so that rounding bias cancels.
bool Falls(std::int32_t row) {
  return row % 2 == 1;
}

double SumOfColumn(const HostImage& image, std::int32_t x) {
  double sum = 0.0;
  for (std::int32_t y = 0; y < image.Height(); ++y)
    sum += Falls(y) ? -SumOfComponents(image, x, y) : SumOfComponents(image, x, y);
  return sum;
}

// Adds the component sums at the corners of the cells to a table of (cells + 1) by (cells + 1).
void AddCorners(const HostImage& image, const KernelPicture& picture, double sign, std::vector<double>& corners) {
  auto corner = corners.begin();
  for (std::int32_t row = 0; row <= picture.cells; ++row) {
    for (std::int32_t column = 0; column <= picture.cells; ++column)
      *corner++ += sign * SumOfComponents(image, column * picture.cellPixels, row * picture.cellPixels);
  }
}

void Differentiate(const std::vector<double>& corners, double heights, KernelPicture& picture) {
  const auto cells = static_cast<std::size_t>(picture.cells);
  const double area = static_cast<double>(picture.cellPixels) * picture.cellPixels;
  picture.weights.resize(cells * cells);
  for (std::size_t row = 0; row < cells; ++row) {
    for (std::size_t column = 0; column < cells; ++column) {
      const std::size_t at = row * (cells + 1) + column;
      const double rise = corners[at + cells + 2] - corners[at + cells + 1] - corners[at + 1] + corners[at];
      picture.weights[row * cells + column] = rise / heights / area;
    }
  }
}

}  // namespace

double KernelProfile::Sum() const {
  return std::accumulate(weights.begin(), weights.end(), 0.0);
}

double KernelProfile::Peak() const {
  return *std::max_element(weights.begin(), weights.end());
}

double KernelProfile::Sigma() const {
  double first = 0.0;
  double second = 0.0;
  for (std::int32_t x = -reach; x <= reach; ++x) {
    first += x * At(x);
    second += static_cast<double>(x) * x * At(x);
  }
  const double mean = first / Sum();
  return std::sqrt(std::max(0.0, second / Sum() - mean * mean));
}

double KernelProfile::WidthAtHalf() const {
  const double half = Peak() / 2.0;
  // From outside, to ignore noise near the peak.
  const auto sideWidth = [&](std::int32_t step) {
    std::int32_t x = step * reach;
    while (x != 0 && At(x) < half)
      x -= step;
    return std::abs(x) + (At(x) - half) / (At(x) - At(x + step));
  };
  return sideWidth(1) + sideWidth(-1);
}

double KernelPicture::Peak() const {
  return *std::max_element(weights.begin(), weights.end());
}

double KernelPicture::Sum() const {
  return std::accumulate(weights.begin(), weights.end(), 0.0) * cellPixels * cellPixels;
}

BoxNumbers BoxNumbersOf(const BlurSizeFacts& facts) {
  BoxNumbers box;
  box.wholeRadius = static_cast<std::int32_t>(facts.boxRadius);
  box.fraction = facts.boxRadius - box.wholeRadius;
  box.fractionQ14 = static_cast<std::int32_t>(box.fraction * 16384.0);
  // Six boxes make the gain, and a box's gain is its scale times the sum of its taps.
  const double taps = 2.0 * box.wholeRadius + 1.0 + 2.0 * box.fractionQ14 / 16384.0;
  box.scaleQ14 = static_cast<std::int32_t>(std::lround(std::pow(facts.flatGain, 1.0 / 6.0) * 16384.0 / taps));
  return box;
}

double Gaussian::At(double x) const {
  if (sigma <= 0.0) return x == 0.0 ? peak : 0.0;
  return peak * std::exp(-x * x / (2.0 * sigma * sigma));
}

Gaussian GaussianFor(const KernelProfile& profile, double sigma) {
  const Gaussian unscaled{sigma, 1.0};
  double samples = 0.0;
  const auto farthest = static_cast<std::int32_t>(std::ceil(8.0 * sigma));
  for (std::int32_t x = -farthest; x <= farthest; ++x)
    samples += unscaled.At(x);
  return {sigma, profile.Sum() / samples};
}

KernelDifference LargestDifference(const KernelProfile& profile, const Gaussian& gaussian) {
  KernelDifference largest{0, profile.At(0) - gaussian.At(0)};
  for (std::int32_t x = -profile.reach; x <= profile.reach; ++x) {
    const double value = profile.At(x) - gaussian.At(x);
    if (std::abs(value) > std::abs(largest.value)) largest = {x, value};
  }
  return largest;
}

KernelProfile MeasureProfile(const EffectFactory& makeEffect, ExecuteContext& context, double blur,
                             std::int32_t depth) {
  KernelProfile profile;
  profile.reach = ReachOf(blur);
  HostImage edges;
  edges.Reset(depth, 4, 2 * profile.reach + 2, kProfileRows);
  // Column 0 is one before the reach; the edge is just before distance 0.
  const double heights = DrawEdges(
      edges, [&](std::int32_t x, std::int32_t y) { return (x > profile.reach) != Falls(y); },
      [](std::int32_t y, std::int32_t c) { return 4 * y + c; });
  HostImage blurred;
  RenderInMemory(makeEffect, KernelJob(blur, 100.0), {.output = &blurred, .input = &edges}, context);
  double before = SumOfColumn(blurred, 0);
  for (std::int32_t x = 1; x < blurred.Width(); ++x) {
    const double sum = SumOfColumn(blurred, x);
    profile.weights.push_back((sum - before) / heights);
    before = sum;
  }
  return profile;
}

KernelPicture MeasurePicture(const EffectFactory& makeEffect, ExecuteContext& context, double blur,
                             std::int32_t depth) {
  KernelPicture picture;
  const std::int32_t reach = ReachOf(blur);
  // Odd, so that the impulse has a middle.
  picture.cellPixels = (2 * reach + kMostCells) / kMostCells / 2 * 2 + 1;
  const std::int32_t half = picture.cellPixels / 2;
  const std::int32_t beyond = (reach - half + picture.cellPixels - 1) / picture.cellPixels;
  picture.cells = 2 * beyond + 1;
  const std::int32_t side = picture.cells * picture.cellPixels + 1;
  const std::int32_t middle = beyond * picture.cellPixels + half;
  picture.corners = CornersFor(depth, side);
  std::vector<double> corners(static_cast<std::size_t>((picture.cells + 1) * (picture.cells + 1)));
  HostImage edges;
  HostImage blurred;
  edges.Reset(depth, 4, side, side);
  double heights = 0.0;
  for (std::int32_t i = 0; 4 * i < picture.corners; ++i) {
    // A different quarter of the picture is bright each time.
    const bool left = i % 2 == 1;
    const bool low = i / 2 % 2 == 1;
    heights += DrawEdges(
        edges, [&](std::int32_t x, std::int32_t y) { return (x > middle) != left && (y > middle) != low; },
        [&](std::int32_t, std::int32_t c) { return 4 * i + c; });
    RenderInMemory(makeEffect, KernelJob(blur, 0.0), {.output = &blurred, .input = &edges}, context);
    AddCorners(blurred, picture, left == low ? 1.0 : -1.0, corners);
  }
  // All rows of a picture share their heights.
  Differentiate(corners, heights / side, picture);
  return picture;
}

KernelReport MeasureKernel(const EffectFactory& makeEffect, ExecuteContext& context, double blur, std::int32_t depth) {
  KernelReport report{blur, depth, FactsOfSize(makeEffect, blur), MeasureProfile(makeEffect, context, blur, depth),
                      MeasurePicture(makeEffect, context, blur, depth)};
  // Weights of floats are not truncated.
  if (depth == 32) report.facts.flatGain = 1.0;
  return report;
}

}  // namespace vblur::host
