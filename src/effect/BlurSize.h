// From the user's parameters to the size of the filter.
#pragma once

namespace vblur {

// What the blur stage evaluates for a frame. pixelsPerUnit is rounded to 32 bits; all else is computed in 64.
struct BlurSizeParts {
  float pixelsPerUnitX = 1.0f;
  float pixelsPerUnitY = 1.0f;
  double amount = 0.0;   // `Blur` at the frame's time, never negative
  double aspectX = 1.0;  // 1 - |a| on the axis that the aspect narrows
  double aspectY = 1.0;
  double blend = 50.0;  // 0 to 100
  double effectGain = 100.0;
  double sourceGain = 100.0;
};

// A pair of sizes in pixels of the picture being rendered.
struct BlurSize {
  float x = 0.0f;
  float y = 0.0f;
};

// Narrows one axis by an aspect of -100 to 100: y for a positive one, x for a negative one.
void SetAspect(BlurSizeParts& parts, double aspect);

}  // namespace vblur
