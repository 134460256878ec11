// Renders one frame whose pictures are in memory, for pictures about the effect: sheets and plots.
#pragma once

#include <memory>

#include "host/ExecuteContext.h"
#include "host/HostImage.h"
#include "host/Job.h"
#include "host/SequenceRenderer.h"
#include "platform/IVBlurFacts.h"

namespace vblur::host {

// The pictures that a frame is made of; null for none. All have the output's depth.
struct FramePictures {
  const HostImage* input = nullptr;
  const HostImage* input2 = nullptr;
};

// Renders the frame at the job's time by an effect of its own. The job gives depth, kind, duration and
// properties; its file names are not looked at. The output gets the first input's size. Throws Failure:
// interrupted when the context is stopped, some frames failed when the effect cannot render.
void RenderInMemory(const EffectFactory& makeEffect, const Job& job, const FramePictures& pictures,
                    ExecuteContext& context, HostImage& output);

// What a size stands for, asked of the effect itself; all defaults when the effect does not tell.
BlurSizeFacts FactsOfSize(const EffectFactory& makeEffect, double blur);

}  // namespace vblur::host
