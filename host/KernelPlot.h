// Draws what was measured of the effect's impulse response: a picture, its profile next to a Gaussian,
// and the numbers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/KernelMeasure.h"
#include "host/TextPainter.h"

namespace vblur::host {

struct KernelReport {
  double blur = 0.0;
  std::int32_t depth = 16;
  BlurSizeFacts facts;
  KernelProfile profile;
  KernelPicture picture;
};

// Throws as RenderInMemory does.
KernelReport MeasureKernel(const EffectFactory& makeEffect, ExecuteContext& context, double blur, std::int32_t depth);

struct KernelNumber {
  std::string name;
  std::string value;
};

// The numbers that stand beside the plot.
std::vector<KernelNumber> KernelNumbers(const KernelReport& report);

// An opaque 8-bit picture.
void DrawKernel(const KernelReport& report, const TextPainter& text, HostImage& into);

}  // namespace vblur::host
