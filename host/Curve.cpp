#include "host/Curve.h"

#include <algorithm>
#include <cmath>

namespace vblur::host {

namespace {

double Between(double from, double to, double share) {
  const double span = to - from;
  // Equal neighbours stay exactly as they are; only a span beyond the largest number needs the other form.
  return std::isfinite(span) ? from + span * share : from * (1.0 - share) + to * share;
}

}  // namespace

double Curve::At(double time) const {
  const auto next =
      std::upper_bound(keys.begin(), keys.end(), time, [](double at, const CurveKey& key) { return at < key.time; });
  if (next == keys.begin()) return next->value;
  const CurveKey& before = *(next - 1);
  if (next == keys.end() || interpolation == Interpolation::Hold) return before.value;
  const double share = (time - before.time) / (next->time - before.time);
  if (interpolation == Interpolation::Linear) return Between(before.value, next->value, share);
  return Between(before.value, next->value, share * share * (3.0 - 2.0 * share));
}

}  // namespace vblur::host
