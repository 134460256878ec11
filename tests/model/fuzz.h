// Blur or sharpen of chosen channels: the filter, with copies and conversions to grey and YUV.
#pragma once

#include <optional>

#include "depth.h"
#include "picture.h"
#include "window.h"

namespace model {

/// What is filtered.
enum FuzzMode : int {
  kFuzzAll = 0,
  kFuzzAlpha = 1,
  kFuzzRgb = 2,
  kFuzzGrey = 3,
  kFuzzRed = 4,
  kFuzzGreen = 5,
  kFuzzBlue = 6,
  kFuzzLuminance = 7,
  kFuzzU = 8,
  kFuzzV = 9,
  kFuzzChroma = 10,
};

enum FuzzMethod : int { kFuzzBlur = 0, kFuzzSharpen = 1 };

struct FuzzJob {
  Depth depth = Depth::Eight;
  Picture source;                ///< with box, edge methods, outside colour and origin
  Picture target;                ///< its content before, with size and write origin
  std::optional<Window> window;  ///< inclusive, in image coordinates
  int mode = kFuzzAll;
  int method = kFuzzBlur;
  float sizeX = 0.0f;  ///< radius of one box
  float sizeY = 0.0f;
  float aspect = 1.0f;
};

/// The target after the job. `outOfMemory`, if given, is set when a buffer counts as refused memory, which ends the
/// job.
Picture Fuzz(const FuzzJob& job, bool* outOfMemory = nullptr);

}  // namespace model
