// The filter: boxes along x into an intermediate picture, boxes along y out of it.
#pragma once

#include <array>
#include <optional>

#include "depth.h"
#include "picture.h"
#include "window.h"

namespace model {

struct FilterSettings {
  Depth depth = Depth::Eight;  ///< of input, intermediate and output
  float sizeX = 0.0f;          ///< radius of one box, in pixels
  float sizeY = 0.0f;
  float aspect = 1.0f;
  int boxes = 3;
  std::array<bool, 4> channels{true, true, true, true};
  std::optional<Window> window;
};

/// Filters the chosen channels of the window and keeps the others; with both sizes at zero copies all four. Input and
/// output may be one picture. False, and nothing is written, if the intermediate or a line counts as refused memory.
bool Filter(const Picture& input, Picture& output, const FilterSettings& settings);

}  // namespace model
