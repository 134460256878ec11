#include "host/hosted/FrameRender.h"

#include "host/base/Failure.h"
#include "host/hosted/CoordMan.h"
#include "host/hosted/EffectHost.h"

namespace vblur::host {

void RenderInMemory(const EffectFactory& makeEffect, const Job& job, const FramePictures& pictures,
                    ExecuteContext& context) {
  const HostImage& input = *pictures.input;
  HostImage& output = *pictures.output;
  output.Reset(input.Depth(), 4, input.Width(), input.Height());
  output.Clear();
  const std::array<double, 2> size{static_cast<double>(output.Width()), static_cast<double>(output.Height())};
  EffectHost effectHost(job.project.value_or(ProjectSizes{size, size}));
  CoordMan coordMan(job.proxy);
  // Last: destroyed before what it borrows.
  HostedEffect effect(makeEffect());
  effect.SetUp(job, coordMan, context);
  const HRESULT result = effect.RenderFrame(pictures, effectHost, job.time, 0);
  if (context.Stopped()) throw Failure(ExitCode::Interrupted, "interrupted");
  if (result != kOk || !effect.WhyNotRendered().empty())
    throw Failure(ExitCode::SomeFramesFailed, "the effect cannot render a picture of the sheet");
}

BlurSizeFacts FactsOfSize(const EffectFactory& makeEffect, double blur) {
  return HostedEffect(makeEffect()).DescribeBlurSize(blur);
}

}  // namespace vblur::host
