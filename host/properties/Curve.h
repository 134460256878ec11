// Aliases for the curves of the host's property containers.
#pragma once

#include "platform/DSCurve.h"

namespace vblur::host {

using Curve = DSCurve;
using CurveKey = DSCurveKey;
using Interpolation = DSInterpolation;

}  // namespace vblur::host
