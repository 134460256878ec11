#include "platform/DSCurve.h"

#include <algorithm>
#include <cmath>

namespace vblur {

namespace {

double Between(double from, double to, double share) {
  const double span = to - from;
  // Exact for equal neighbours. The second form is for spans that overflow a double.
  return std::isfinite(span) ? from + span * share : from * (1.0 - share) + to * share;
}

}  // namespace

double DSCurve::At(double time) const {
  const auto next =
      std::upper_bound(keys.begin(), keys.end(), time, [](double at, const DSCurveKey& key) { return at < key.time; });
  if (next == keys.begin()) return next->value;
  const DSCurveKey& before = *(next - 1);
  if (next == keys.end() || interpolation == DSInterpolation::Hold) return before.value;
  const double share = (time - before.time) / (next->time - before.time);
  if (interpolation == DSInterpolation::Linear) return Between(before.value, next->value, share);
  return Between(before.value, next->value, share * share * (3.0 - 2.0 * share));
}

}  // namespace vblur
