// Draws what was measured of the effect's impulse response: a picture, its profile next to a Gaussian,
// and the numbers.
#pragma once

#include <string>
#include <vector>

#include "host/drawing/TextPainter.h"
#include "host/studies/KernelMeasure.h"

namespace vblur::host {

struct KernelNumber {
  std::string name;
  std::string value;
};

// The numbers beside the plot.
std::vector<KernelNumber> KernelNumbers(const KernelReport& report);

// An opaque 8-bit picture.
void DrawKernel(const KernelReport& report, const TextPainter& text, HostImage& into);

}  // namespace vblur::host
