#include "host/studies/TestChart.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "host/files/Sample.h"

namespace vblur::host {

namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;

struct ChartColour {
  double red = 0.0;
  double green = 0.0;
  double blue = 0.0;
  double alpha = 1.0;
};

// One place of the chart: x and y from the upper left corner in parts of its height, and in pixels.
struct Spot {
  double x = 0.0;
  double y = 0.0;
  double pixel = 0.0;  // the size of a pixel in the same unit
  std::int32_t column = 0;
  std::int32_t row = 0;
  double aspect = 1.0;  // the width of the chart
  double phase = 0.0;   // 0 to 1 over a loop of frames
};

ChartColour Grey(double value) {
  return {value, value, value, 1.0};
}

ChartColour Mix(const ChartColour& from, const ChartColour& to, double part) {
  const auto mix = [part](double a, double b) { return a + (b - a) * part; };
  return {mix(from.red, to.red), mix(from.green, to.green), mix(from.blue, to.blue), mix(from.alpha, to.alpha)};
}

// 0 below -half, 1 above half, straight between.
double Step(double x, double half) {
  return std::clamp(0.5 + x / (2.0 * half), 0.0, 1.0);
}

ChartColour Hue(double turn) {
  const auto part = [turn](double shift) { return 0.5 + 0.5 * std::cos(kTurn * (turn - shift)); };
  return {part(0.0), part(1.0 / 3.0), part(2.0 / 3.0), 1.0};
}

ChartColour Bars(const Spot& spot) {
  constexpr std::array<ChartColour, 8> kBars = {
      {{1, 1, 1, 1}, {1, 1, 0, 1}, {0, 1, 1, 1}, {0, 1, 0, 1}, {1, 0, 1, 1}, {1, 0, 0, 1}, {0, 0, 1, 1}, {0, 0, 0, 1}}};
  const auto bar = std::clamp(static_cast<int>(spot.x / spot.aspect * 8.0), 0, 7);
  return kBars[static_cast<std::size_t>(bar)];
}

ChartColour Ramps(const Spot& spot) {
  const double part = spot.x / spot.aspect;
  if (spot.y < 0.215) return Grey(part);
  constexpr double kSteps = 16.0;
  return Grey(std::floor(part * kSteps) / (kSteps - 1.0));
}

// Rings whose frequency rises outwards to the highest that pixels can hold.
ChartColour ZonePlate(const Spot& spot, double x, double y, double radius) {
  const double distance = std::hypot(x, y);
  if (distance > radius) return Grey(0.5);
  const double finest = 0.5 / spot.pixel;  // rings in a unit of length
  const double rings = finest * distance * distance / (2.0 * radius);
  return Grey(0.5 + 0.5 * std::cos(kTurn * (rings - spot.phase * 4.0)));
}

ChartColour Star(const Spot& spot, double x, double y, double radius) {
  constexpr double kRays = 24.0;
  const double distance = std::hypot(x, y);
  const double angle = std::atan2(y, x) + spot.phase * kTurn / kRays * 4.0;
  const double edge = std::max(distance * kTurn / kRays / 4.0, spot.pixel / 2.0);
  const double across = std::asin(std::sin(angle * kRays)) / kRays * distance;
  const ChartColour rays = Grey(Step(across, std::min(spot.pixel / 2.0, edge)));
  return Mix(rays, Grey(0.18), Step(distance - radius, spot.pixel / 2.0));
}

// Full in the middle, transparent outside; its colours go on to the edge of the panel.
ChartColour Disc(const Spot& spot, double x, double y, double radius) {
  const double drift = 0.25 * radius * std::sin(kTurn * spot.phase);
  const double distance = std::hypot(x - drift, y) / radius;
  ChartColour colour = Hue(std::atan2(y, x - drift) / kTurn);
  const double fall = std::clamp((distance - 0.35) / 0.65, 0.0, 1.0);
  colour.alpha = 1.0 - fall * fall * (3.0 - 2.0 * fall);
  return colour;
}

ChartColour Panels(const Spot& spot) {
  constexpr double kMiddle = 0.515;
  const double width = spot.aspect / 3.0;
  const double radius = std::min(width, 0.47) * 0.46;
  const int panel = std::clamp(static_cast<int>(spot.x / width), 0, 2);
  const double x = spot.x - (panel + 0.5) * width;
  const double y = spot.y - kMiddle;
  if (panel == 0) return ZonePlate(spot, x, y, radius);
  return panel == 1 ? Star(spot, x, y, radius) : Disc(spot, x, y, radius * 1.25);
}

// Upright lines 1, 2, 4, 8 and 16 pixels wide, then level ones, then single points.
ChartColour Lines(const Spot& spot) {
  constexpr int kGroups = 12;
  const int group = std::clamp(static_cast<int>(spot.x / spot.aspect * kGroups), 0, kGroups - 1);
  if (group < 5) return Grey((spot.column >> group) % 2);
  if (group < 10) return Grey((spot.row >> (group - 5)) % 2);
  const bool point = spot.column % 16 == 8 && spot.row % 16 == 8;
  if (group == 10) return Grey(point ? 1.0 : 0.0);
  return point ? ChartColour{1.0, 0.5, 0.0, 1.0} : ChartColour{0.0, 0.1, 0.3, 1.0};
}

// Patches with hard edges, one of them slanted.
ChartColour Patches(const Spot& spot) {
  const double part = spot.x / spot.aspect;
  if (part < 0.5)
    return Step(spot.x - 0.25 * spot.aspect + (spot.y - 0.94) * 0.35, spot.pixel / 2.0) > 0.5
               ? ChartColour{0.9, 0.35, 0.1, 1.0}
               : ChartColour{0.1, 0.3, 0.55, 1.0};
  return Mix(ChartColour{0.05, 0.05, 0.3, 1.0}, ChartColour{1.0, 0.85, 0.5, 1.0}, part * 2.0 - 1.0);
}

ChartColour ColourAt(const Spot& spot) {
  if (spot.y < 0.15) return Bars(spot);
  if (spot.y < 0.28) return Ramps(spot);
  if (spot.y < 0.75) return Panels(spot);
  if (spot.y < 0.88) return Lines(spot);
  return Patches(spot);
}

template <typename Component>
void DrawRow(const Spot& left, HostImage& image, std::int32_t row) {
  auto* pixel = reinterpret_cast<Component*>(image.Row(image.Height() - 1 - row));
  Spot spot = left;
  for (std::int32_t column = 0; column < image.Width(); ++column, pixel += 4) {
    spot.column = column;
    spot.x = (column + 0.5) * spot.pixel;
    const ChartColour colour = ColourAt(spot);
    pixel[0] = FromSample<Component>(colour.red);
    pixel[1] = FromSample<Component>(colour.green);
    pixel[2] = FromSample<Component>(colour.blue);
    pixel[3] = FromSample<Component>(colour.alpha);
  }
}

}  // namespace

void DrawTestChart(HostImage& image, std::int32_t depth, std::int32_t width, std::int32_t height, std::int32_t frame) {
  constexpr std::int32_t kLoop = 100;
  image.Reset(depth, 4, width, height);
  Spot spot;
  spot.pixel = 1.0 / height;
  spot.aspect = static_cast<double>(width) / height;
  spot.phase = static_cast<double>((frame % kLoop + kLoop) % kLoop) / kLoop;
  for (std::int32_t row = 0; row < height; ++row) {
    spot.row = row;
    spot.y = (row + 0.5) * spot.pixel;
    if (depth == 8) {
      DrawRow<std::uint8_t>(spot, image, row);
    } else if (depth == 16) {
      DrawRow<std::int16_t>(spot, image, row);
    } else {
      DrawRow<float>(spot, image, row);
    }
  }
}

}  // namespace vblur::host
