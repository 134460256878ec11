#include "blur/ExactBox.h"

namespace vblur {
namespace {

// Sums wrap in between; a whole sum fits.
std::int64_t plus(std::int64_t a, std::int64_t b) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}

std::int64_t minus(std::int64_t a, std::int64_t b) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b));
}

}  // namespace

void exactBoxRows(const float* in, std::int64_t n, int lanes, const ExactBox& box, float* out) {
  const double steps = std::ldexp(1.0, box.step);
  const std::int64_t held = 2 * static_cast<std::int64_t>(box.r) + 1 + box.d;
  std::int64_t sums[kMostExactLanes] = {};
  for (std::int64_t i = 0; i < held; ++i) {
    for (int l = 0; l < lanes; ++l)
      sums[l] = plus(sums[l], inSteps(in[i * lanes + l], steps));
  }
  for (std::int64_t i = 0; i < n; ++i) {
    const float* leaving = in + i * lanes;
    const float* entering = in + (i + held) * lanes;
    for (int l = 0; l < lanes; ++l) {
      const std::int64_t first = inSteps(leaving[l], steps);
      const std::int64_t last = inSteps(entering[l], steps);
      const std::int64_t rest = minus(sums[l], first);
      if (box.d == 0) {
        out[i * lanes + l] = static_cast<float>(static_cast<double>(sums[l]) * box.whole);
      } else {
        out[i * lanes + l] = static_cast<float>(static_cast<double>(rest) * box.whole +
                                                static_cast<double>(plus(first, last)) * box.atEnds);
      }
      sums[l] = plus(rest, last);
    }
  }
}

}  // namespace vblur
