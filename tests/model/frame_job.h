// The inputs of one frame.
#pragma once

#include <array>
#include <optional>

#include "depth.h"
#include "picture.h"
#include "properties.h"

namespace model {

enum EffectKind : int { kFilter = 1, kGenerator = 3, kPaint = 4, kTransition = 5 };

/// An image of the host: its pixels, its pixel origin, and its position and size in world units.
struct FrameImage {
  Picture picture;  ///< only size and pixels are used
  std::array<int, 2> origin{0, 0};
  std::array<double, 2> position{0.0, 0.0};
  std::array<double, 2> size{0.0, 0.0};
};

/// In pixels, relative to the first input, or to the output where there is no input.
struct Region {
  int x, y, width, height;
};

struct Project {
  std::array<double, 2> userSize;
  std::array<double, 2> worldSize;
};

struct FrameJob {
  Depth depth = Depth::Eight;
  int kind = kFilter;
  int field = 0;  ///< 0 whole frame, 1 first field, 2 second field
  std::optional<Region> region;
  double time = 0.0;
  double duration = 1.0;
  std::optional<Project> project;  ///< none: the content properties cannot be read
  std::array<double, 2> proxy{1.0, 1.0};
  Properties properties;
  std::optional<FrameImage> input;
  std::optional<FrameImage> input2;
  std::optional<Picture> mask;          ///< in the first component
  std::array<int, 2> maskOffset{0, 0};  ///< relative to the first input
  FrameImage output;                    ///< its content before the frame
};

}  // namespace model
