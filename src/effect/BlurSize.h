// From what the user sets to the size of the filter.
#pragma once

namespace vblur {

// What the blur stage evaluates for a frame, and the parts of its size among it. Only the divisions by the project's
// size and the narrowing to 32 bits that they name are rounded to floats; the rest is computed in 64 bits.
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

// How far an aspect of -100 to 100 narrows each axis: a positive one narrows y, a negative one x.
void SetAspect(BlurSizeParts& parts, double aspect);

}  // namespace vblur
