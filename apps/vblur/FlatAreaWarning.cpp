#include "apps/vblur/FlatAreaWarning.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <set>

#include "host/base/Failure.h"
#include "host/jobs/JobCheck.h"
#include "host/properties/PropertyText.h"
#include "host/sequence/JobPictures.h"
#include "properties/PropertyTable.h"

namespace vblur::cli {

namespace {

constexpr double kShowing = 0.02;

std::set<double> UsedSizes(const host::Job& job) {
  const GUID& blur = PropertyOf(PropertyId::Blur).guid;
  const host::FrameList frames = host::ResolveFrames(job);
  const auto* setting = job.properties.Find(blur);
  const bool animated = setting && std::holds_alternative<host::Curve>(*setting);
  std::set<double> sizes;
  for (std::int64_t i = 0; i < (animated ? frames.Count() : 1); ++i) {
    const auto frame = frames.FrameAt(i);
    sizes.insert(std::max(0.0, job.properties.ValueAt(blur, host::FrameTime(job, frame))));
  }
  return sizes;
}

// Floats keep flat areas at every size. False where the input cannot be read, which a frame says.
bool IsRenderedInFloats(const host::Job& job) {
  constexpr std::int32_t kFloats = 32;
  try {
    return host::JobPictures(job).DepthAt(host::ResolveFrames(job).FrameAt(0)) == kFloats;
  } catch (const host::Failure&) {
    return false;
  }
}

}  // namespace

FlatAreaLoss LargestFlatAreaLoss(const host::Job& job, const host::HostedEffect& effect) {
  const double proxy = std::max(std::abs(job.proxy[0]), std::abs(job.proxy[1]));
  FlatAreaLoss largest;
  for (const double size : UsedSizes(job)) {
    const double loss = 1.0 - effect.DescribeBlurSize(size * proxy).flatGain;
    if (loss > largest.loss) largest = {size, loss};
  }
  return largest;
}

std::string FormatPercent(double part) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f %%", part * 100.0);
  return text;
}

void WarnOfFlatAreas(const host::Job& job, const host::EffectFactory& makeEffect, Terminal& terminal) {
  if (terminal.IsQuiet()) return;
  const FlatAreaLoss largest = LargestFlatAreaLoss(job, host::HostedEffect(makeEffect()));
  if (largest.loss <= kShowing || IsRenderedInFloats(job)) return;
  terminal.Warn("at a Blur of " + host::FormatNumber(largest.blur) + " flat areas of the blurred picture lose " +
                FormatPercent(largest.loss) + " of their value; see vblur properties Blur --size " +
                host::FormatNumber(largest.blur));
}

}  // namespace vblur::cli
