// Renders one frame whose pictures are in memory, for pictures about the effect: sheets and plots.
#pragma once

#include "host/hosted/EffectServer.h"
#include "host/hosted/ExecuteContext.h"
#include "host/hosted/HostImage.h"
#include "host/hosted/HostedEffect.h"
#include "host/jobs/Job.h"

namespace vblur::host {

// Renders the frame at the job's time by an effect of its own. The job gives depth, kind, duration and
// properties; its file names are not looked at. The output gets the first input's size. Throws Failure:
// interrupted when the context is stopped, some frames failed when the effect cannot render.
// The pictures' output is the one to fill.
void RenderInMemory(const EffectFactory& makeEffect, const Job& job, const FramePictures& pictures,
                    ExecuteContext& context);

// What a size stands for, asked of the effect itself; all defaults when the effect does not tell.
BlurSizeFacts FactsOfSize(const EffectFactory& makeEffect, double blur);

}  // namespace vblur::host
