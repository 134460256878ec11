#include "host/FrameRender.h"

#include <new>
#include <string>

#include "host/CoordMan.h"
#include "host/EffectHost.h"
#include "host/EffectSetup.h"
#include "host/Failure.h"
#include "host/JobCheck.h"

namespace vblur::host {

namespace {

// The effect borrows pictures without promising to leave them alone; it reads inputs only.
IDSImage* Borrow(const HostImage* image) {
  return const_cast<HostImage*>(image);
}

void RequireRendered(HRESULT result, const IDSImageEffect& effect, const ExecuteContext& context) {
  if (context.stopped()) throw Failure(ExitCode::Interrupted, "interrupted");
  const auto* facts = dynamic_cast<const IVBlurFacts*>(&effect);
  if (facts != nullptr && facts->RanOutOfMemory()) throw std::bad_alloc();
  if (result != kOk) throw Failure(ExitCode::SomeFramesFailed, "the effect cannot render a picture of the sheet");
}

}  // namespace

void RenderInMemory(const EffectFactory& makeEffect, const Job& job, const FramePictures& pictures,
                    ExecuteContext& context, HostImage& output) {
  const HostImage& input = *pictures.input;
  output.Reset(input.depth(), 4, input.width(), input.height());
  output.Clear();
  const std::array<double, 2> size{static_cast<double>(output.width()), static_cast<double>(output.height())};
  EffectHost effectHost(job.properties, job.project.value_or(ProjectSizes{size, size}));
  CoordMan coordMan(job.proxy);
  // Last, so that it goes before what it borrows.
  const auto effect = makeEffect();
  effect->SetEffectKind(static_cast<std::int32_t>(ResolveKind(job)));
  ApplyProperties(job.properties, *effect);
  effect->SetDuration(ResolveDuration(job));
  effect->SetCoordMan(&coordMan);
  effect->SetExecuteContext(&context);
  effect->SetEffectHost(&effectHost);
  effect->SetOutput(&output);
  effect->SetInput(Borrow(pictures.input));
  effect->SetInput2(Borrow(pictures.input2));
  RequireRendered(effect->RenderFrame(job.time), *effect, context);
}

BlurSizeFacts FactsOfSize(const EffectFactory& makeEffect, double blur) {
  const auto effect = makeEffect();
  const auto* facts = dynamic_cast<const IVBlurFacts*>(effect.get());
  return facts == nullptr ? BlurSizeFacts{} : facts->DescribeBlurSize(blur);
}

}  // namespace vblur::host
