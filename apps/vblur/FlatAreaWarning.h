// Large sizes darken flat areas, since the filter's fixed-point weights sum to less than 1. The
// program warns once when the loss is visible.
#pragma once

#include <optional>
#include <string>

#include "apps/vblur/Terminal.h"
#include "host/hosted/EffectServer.h"
#include "host/hosted/HostedEffect.h"
#include "host/jobs/Job.h"

namespace vblur::cli {

struct FlatAreaLoss {
  double blur = 0.0;  // the value of the property, at the time where flat areas lose most
  double loss = 0.0;  // 0.02 for 2 %
};

// The largest loss over all frames of a job.
FlatAreaLoss LargestFlatAreaLoss(const host::Job& job, const host::HostedEffect& effect);

// "3.4 %".
std::string FormatPercent(double part);

void WarnOfFlatAreas(const host::Job& job, const host::EffectFactory& makeEffect, Terminal& terminal);

}  // namespace vblur::cli
