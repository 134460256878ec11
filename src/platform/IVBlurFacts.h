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

// Why the last frame was not rendered, or not from all its pictures.
struct FrameRefusal {
  const char* picture = nullptr;  // "output", "input", "second input", "mask"; null when it is none of them
  const char* reason = nullptr;   // in words that go on from there, such as "has no pixels"; null: it was rendered
};

// What the effect's 32-bit positions carry, with the farthest that a blur reads beyond a picture. A frame with a
// picture beyond these limits is refused.
struct FrameLimits {
  // Every corner of a picture lies within -kFarthestPixel and kFarthestPixel.
  static constexpr std::int32_t kFarthestPixel = 1 << 29;
  static constexpr std::int32_t kLongestSide = 1 << 26;
};

class IVBlurFacts : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A821}");

  virtual BlurSizeFacts DescribeBlurSize(double blur) const = 0;
  // The last frame ran out of memory. RenderFrame returns 0 then too.
  virtual bool RanOutOfMemory() const = 0;
  // Of the last frame, also if it was interrupted.
  virtual FrameMemoryFacts DescribeFrameMemory() const = 0;
  // Of the last frame. RenderFrame returns 0 then too; a stop by the host and a lack of memory are no refusals.
  virtual FrameRefusal WhyNotRendered() const = 0;

 protected:
  ~IVBlurFacts() = default;
};

}  // namespace vblur
