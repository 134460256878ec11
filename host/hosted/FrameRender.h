// Renders one frame whose pictures are in memory, for pictures about the effect: sheets and plots.
#pragma once

#include "host/hosted/EffectServer.h"
#include "host/hosted/ExecuteContext.h"
#include "host/hosted/HostImage.h"
#include "host/hosted/HostedEffect.h"
#include "host/jobs/Job.h"

namespace vblur::host {

// Renders the frame at the job's time into `pictures.output`, which gets the first input's size, with a new effect. The
// job gives depth, kind, duration and properties; its file names are ignored. Throws Failure: interrupted when the
// context is stopped, some frames failed when the effect cannot render.
void RenderInMemory(const EffectFactory& makeEffect, const Job& job, const FramePictures& pictures,
                    ExecuteContext& context);

// The effect's facts about a value of `Blur`; defaults for an effect without facts.
BlurSizeFacts FactsOfSize(const EffectFactory& makeEffect, double blur);

}  // namespace vblur::host
