// A crop of all three kinds, with Reflect on both axes.
#pragma once

#include "composite/ApplyCrop.h"

namespace vblur::test {

inline CropSettings cropOf(float left, float right, float bottom, float top) {
  CropSettings crop;
  crop.mode = kCropBoxAndEdges;
  crop.left = left;
  crop.right = right;
  crop.bottom = bottom;
  crop.top = top;
  crop.xEdgeMethod = kEdgeReflect;
  crop.yEdgeMethod = kEdgeReflect;
  return crop;
}

}  // namespace vblur::test
