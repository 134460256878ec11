// One axis of a texture: its box of pixels, and what a read beyond the box gives.
#pragma once

#include <cstdint>

#include "image/Arithmetic.h"

namespace vblur {

// What a read outside the box gives.
enum HvEdgeMethod : std::int32_t {
  kEdgeColour = 0,   // the texture's outside colour
  kEdgeRepeat = 1,   // the nearest pixel of the box
  kEdgeReflect = 2,  // the box mirrored about its edge, the edge pixel doubled
  kEdgeWrap = 3,     // the box tiled
};

// The result of a lookup outside the box.
inline constexpr std::int32_t kOutside = -1;

// A run of pixels: the buffer index of the first (kOutside: all have the outside colour), the step through
// the buffer (1, -1 or 0) and the length.
struct HvTexRun {
  std::int32_t index = kOutside;
  std::int32_t step = 0;
  std::int32_t length = 0;

  friend bool operator==(const HvTexRun&, const HvTexRun&) = default;
};

// The two pixels around a sample, kOutside for the outside colour, and whether the second follows the first
// in memory.
struct HvTexPair {
  std::int32_t p0 = kOutside;
  std::int32_t p1 = kOutside;
  bool neighbours = false;

  friend bool operator==(const HvTexPair&, const HvTexPair&) = default;
};

struct HvTexAxis {
  std::int32_t size = 0;     // pixels along this axis in the buffer
  float originF = 0.0f;      // where buffer index 0 lies in image space, for sampling
  std::int32_t originI = 0;  // the same as a whole pixel, for integer reads
  std::int32_t edgeMethod = kEdgeColour;
  std::int32_t lo = 0;           // first buffer index of the box, inclusive
  std::int32_t hi = -1;          // last buffer index of the box, inclusive
  std::int32_t count = 0;        // hi - lo + 1
  std::int32_t writeOrigin = 0;  // image coordinate of buffer index 0 when the texture is a target

  // The whole axis as the box.
  void setSize(std::int32_t n);
  // Both ends inclusive, in either order, clamped to the buffer. An axis of size 0 gets a box at -1.
  void setBounds(std::int32_t a, std::int32_t b);
  void setEdgeMethod(std::int32_t method) { edgeMethod = method; }
  void setOrigin(std::int32_t origin);
  void setOrigin(float origin);

  // Maps buffer index i into the box, or to kOutside. Without pixels everything is outside.
  std::int32_t mapIndex(std::int32_t i) const;
  // The run that starts at an image coordinate; subtracts the origin.
  HvTexRun runAt(std::int32_t x) const {
    const std::int32_t i = wrapSub(x, originI);
    if (size > 0 && i >= lo && i <= hi) return {i, 1, hi - i + 1};
    return runBeyond(i);
  }
  // The pair for a sample between buffer indices i and i + 1.
  HvTexPair pairAt(std::int32_t i) const;

 private:
  // The position of v < 0 in the tiling of the box, 0 to count - 1.
  std::int32_t floorMod(std::int32_t v) const { return (v + 1) % count + count - 1; }
  HvTexRun runBeyond(std::int32_t i) const;
  HvTexRun runBelow(std::int32_t i) const;
  HvTexRun runAbove(std::int32_t i) const;
  HvTexPair pairBelow(std::int32_t v) const;
  HvTexPair pairAbove(std::int32_t v) const;
};

}  // namespace vblur
