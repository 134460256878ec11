#include "exact_box.h"

#include <cmath>
#include <cstddef>

#include "depth.h"

namespace model {
namespace {

/// A component in units of 2^-step: what is no number is 0, what is beyond the largest half float is that.
std::int64_t Fixed(float value, int step) {
  const float most = 65504.0f;
  if (std::isnan(value)) return 0;
  if (value > most) value = most;
  if (value < -most) value = -most;
  return std::llrint(std::ldexp(static_cast<double>(value), step));
}

}  // namespace

std::vector<std::int32_t> ExactBoxLine(const LineSource& source, std::int64_t begin, std::int64_t end, float radius) {
  const std::int64_t r = static_cast<std::int64_t>(radius);
  const double f = static_cast<double>(radius - static_cast<float>(r));
  const std::int64_t taps = 2 * r + 1;
  int step = 46;
  while ((std::int64_t{1} << (46 - step)) < taps)
    --step;
  const double whole = std::ldexp(1.0 / (static_cast<double>(taps) + 2.0 * f), -step);
  const double ends = whole * f;

  // upTo[i] is the sum of all values before begin - r - 1 + i, modulo 2^64: any run of taps is a difference of two.
  std::vector<std::int64_t> values;
  std::vector<std::uint64_t> upTo{0};
  for (std::int64_t x = begin - r - 1; x <= end + r; ++x) {
    values.push_back(Fixed(FloatOf(source(x)), step));
    upTo.push_back(upTo.back() + static_cast<std::uint64_t>(values.back()));
  }
  std::vector<std::int32_t> result;
  for (std::int64_t x = begin; x < end; ++x) {
    const auto first = static_cast<std::size_t>(x - begin);
    const auto past = first + static_cast<std::size_t>(taps) + 1;
    const auto inner = static_cast<std::int64_t>(upTo[past] - upTo[first + 1]);
    double mean = static_cast<double>(inner) * whole;
    if (f != 0.0) mean += static_cast<double>(values[first] + values[past]) * ends;
    result.push_back(BitsOf(static_cast<float>(mean)));
  }
  return result;
}

}  // namespace model
