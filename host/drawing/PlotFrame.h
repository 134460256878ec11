// The coordinates of a plot: from numbers to pixels, and round numbers for its ticks.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vblur::host {

struct PlotRange {
  double low = 0.0;
  double high = 1.0;
};

// Round numbers (1, 2 or 5 times a power of ten apart) within a range, at most `most` and at least one
// where the range holds one.
std::vector<double> TicksOf(PlotRange range, std::int32_t most);
// With as many digits as neighbours need to differ.
std::string TickText(double tick, double step);

// A plot's box in pixels from the upper left corner, and the ranges of its axes.
struct PlotFrame {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t width = 1;
  std::int32_t height = 1;
  PlotRange across;
  PlotRange up;

  double PixelX(double value) const { return x + (value - across.low) / (across.high - across.low) * width; }
  double PixelY(double value) const { return y + height - (value - up.low) / (up.high - up.low) * height; }
  // The same plot at the origin of a canvas `factor` times as large.
  PlotFrame Enlarged(std::int32_t factor) const { return {0, 0, width * factor, height * factor, across, up}; }
};

}  // namespace vblur::host
