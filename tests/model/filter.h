// The filter: boxes along x into an intermediate picture, boxes along y out of it.
#pragma once

#include <array>
#include <optional>

#include "depth.h"
#include "picture.h"
#include "window.h"

namespace model {

struct FilterSettings {
  Depth depth = Depth::Eight;  ///< of input, intermediate and output alike
  float sizeX = 0.0f;          ///< radius of one box, in pixels
  float sizeY = 0.0f;
  float aspect = 1.0f;
  int boxes = 3;
  std::array<bool, 4> channels{true, true, true, true};
  std::optional<Window> window;
};

/// Filters the chosen channels of the window; the others stay as they are, except that with both sizes
/// at zero all four are copied. Input and output may be one picture.
/// False if memory would be wanting for the intermediate or a line: then nothing is written.
bool Filter(const Picture& input, Picture& output, const FilterSettings& settings);

}  // namespace model
