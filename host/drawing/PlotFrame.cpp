#include "host/drawing/PlotFrame.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace vblur::host {

namespace {

double RoundStep(double least) {
  const double decade = std::pow(10.0, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * decade >= least * (1.0 - 1e-9)) return factor * decade;
  }
  return 10.0 * decade;
}

}  // namespace

std::vector<double> TicksOf(PlotRange range, std::int32_t most) {
  const double step = RoundStep((range.high - range.low) / most);
  const auto first = static_cast<std::int64_t>(std::ceil(range.low / step - 1e-9));
  const auto last = static_cast<std::int64_t>(std::floor(range.high / step + 1e-9));
  std::vector<double> ticks;
  for (std::int64_t i = first; i <= last; ++i)
    ticks.push_back(static_cast<double>(i) * step);
  return ticks;
}

std::string TickText(double tick, double step) {
  const int digits = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), "%.*f", digits, tick);
  return text.data();
}

}  // namespace vblur::host
