// The curves of the host's property containers, by the names of the host's own code.
#pragma once

#include "platform/DSCurve.h"

namespace vblur::host {

using Curve = DSCurve;
using CurveKey = DSCurveKey;
using Interpolation = DSInterpolation;

}  // namespace vblur::host
