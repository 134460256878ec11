// All that a container holds of one property: the plain value and the curve.
#pragma once

#include <optional>

#include "platform/DSCurve.h"
#include "platform/DSVariant.h"
#include "platform/IDSProperties.h"

namespace vblur::host {

struct PropertyState {
  DSVariant plain;
  std::optional<DSCurve> curve;

  // Nothing for a property that the container lacks.
  static std::optional<PropertyState> Read(IDSProperties& from, const GUID& property);
  // Writes what the container holds otherwise, so that nothing else is notified: the curve, then the plain value. What
  // listeners write to the other part stays. False when the container refuses a part, or lacks the property; a curve
  // that was written stays.
  bool Write(IDSProperties& to, const GUID& property) const;

  // To the bit: 0.0 and -0.0 differ, in plain values as in keys.
  friend bool operator==(const PropertyState& a, const PropertyState& b);
};

}  // namespace vblur::host
