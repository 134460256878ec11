// The effect's impulse response, measured from what it renders.
//
// A single bright pixel does not work: at larger sizes its response in whole numbers is rounded to zero. Instead many
// edges of nearly full range and, in whole numbers, different heights, so that rounding errors differ, are rendered,
// averaged and differentiated.
#pragma once

#include <cstdint>
#include <vector>

#include "host/hosted/FrameRender.h"

namespace vblur::host {

// Along x alone, with no blur along y: what a pixel at distance x gets of an impulse of 1.
struct KernelProfile {
  static constexpr std::int32_t kEdges = 256;  // edges averaged

  std::int32_t reach = 0;       // beyond this distance all weights are 0
  std::vector<double> weights;  // from -reach to reach

  double At(std::int32_t x) const {
    return x < -reach || x > reach ? 0.0 : weights[static_cast<std::size_t>(x + reach)];
  }
  double Sum() const;
  double Peak() const;
  // Standard deviation, in pixels.
  double Sigma() const;
  // Full width at half maximum, interpolated linearly between pixels.
  double WidthAtHalf() const;
};

// Along both axes, as a square of cells; a cell is the mean weight of cellPixels by cellPixels pixels.
struct KernelPicture {
  std::int32_t cells = 1;  // a side, odd: the impulse lies in the middle of the middle one
  std::int32_t cellPixels = 1;
  std::int32_t corners = 0;     // corners averaged
  std::vector<double> weights;  // row by row

  double Peak() const;
  double Sum() const;  // over all pixels
};

// The numbers of one box of the filter, from the effect's facts about a size.
struct BoxNumbers {
  std::int32_t wholeRadius = 0;
  double fraction = 0.0;
  std::int32_t fractionQ14 = 0;  // 16384 is 1.0
  std::int32_t scaleQ14 = 0;
};

BoxNumbers BoxNumbersOf(const BlurSizeFacts& facts);

// A Gaussian sampled at pixels and scaled so that the samples have a profile's sum. For a deviation of 0
// all of it is at 0.
struct Gaussian {
  double sigma = 0.0;
  double peak = 0.0;

  double At(double x) const;
};

Gaussian GaussianFor(const KernelProfile& profile, double sigma);

struct KernelDifference {
  std::int32_t x = 0;
  double value = 0.0;  // the response less the Gaussian
};

// Where the two differ most.
KernelDifference LargestDifference(const KernelProfile& profile, const Gaussian& gaussian);

// `blur` from 0 to the property's maximum, depth 8, 16 or 32. Throw as RenderInMemory does.
KernelProfile MeasureProfile(const EffectFactory& makeEffect, ExecuteContext& context, double blur, std::int32_t depth);
KernelPicture MeasurePicture(const EffectFactory& makeEffect, ExecuteContext& context, double blur, std::int32_t depth);

// All facts about a size.
struct KernelReport {
  double blur = 0.0;
  std::int32_t depth = 16;
  BlurSizeFacts facts;
  KernelProfile profile;
  KernelPicture picture;
};

// Throws as RenderInMemory does.
KernelReport MeasureKernel(const EffectFactory& makeEffect, ExecuteContext& context, double blur, std::int32_t depth);

}  // namespace vblur::host
