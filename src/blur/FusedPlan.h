// How the window of a picture is divided into tiles for both passes in one, and whether that is faster than two passes.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vblur {

// How a window is divided among threads.
struct FusedPlan {
  std::int32_t columns = 1;  // tiles side by side
  std::int32_t rows = 1;     // and below one another
  bool pays = false;         // against two passes
};

// What the plan depends on.
struct FusedSize {
  std::int64_t width = 0;   // of the window, in groups of columns
  std::int64_t height = 0;  // of the window, in rows
  std::int32_t groupColumns = 0;
  std::int64_t leadX = 0;  // positions beyond a tile that it filters along x
  std::int64_t leadY = 0;  // rows beyond a tile that it filters along x
  std::size_t groupBytes = 0;
  std::size_t budget = 0;  // bytes of groups of a tile
  std::int32_t threads = 1;
  double costOfTwoPasses = 2.4;  // in pixels through the boxes of one axis
};
FusedPlan planFused(const FusedSize& size);

}  // namespace vblur
