// Facts about the effect and its last frame, for programs that explain them to a user.
#pragma once

#include <cstdint>

#include "Com.h"

namespace vblur {

// The meaning of a value of `Blur`, at full resolution and an aspect of 0.
struct BlurSizeFacts {
  double boxRadius = 0.0;  // of each of the three boxes per axis, in pixels
  double sigma = 0.0;      // standard deviation of the whole impulse response along one axis, in pixels
  double flatGain = 1.0;   // what a flat area is multiplied by: the filter's fixed-point weights sum to less than 1
};

// A frame's peak memory in bytes.
struct FrameMemoryFacts {
  std::int64_t pictures = 0;  // that the host gave it: inputs, output, mask
  std::int64_t own = 0;       // what it allocated: pictures between its stages, lines and tables
};

class IVBlurFacts : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A821}");

  virtual BlurSizeFacts DescribeBlurSize(double blur) const = 0;
  // The last frame ran out of memory. RenderFrame returns 0 then too.
  virtual bool RanOutOfMemory() const = 0;
  // Of the last frame, also if it was interrupted.
  virtual FrameMemoryFacts DescribeFrameMemory() const = 0;

 protected:
  ~IVBlurFacts() = default;
};

}  // namespace vblur
