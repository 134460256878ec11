// A picture as an infinite plane: a grid of pixels, a box in it, and an edge method per axis beyond the box.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace model {

/// Red, green, blue, alpha; or Y, U, V, alpha; or one channel in the first place.
using Pixel = std::array<std::int32_t, 4>;

enum EdgeMethod : int { kColour = 0, kRepeat = 1, kReflect = 2, kWrap = 3 };

struct Axis {
  int size = 0;
  int origin = 0;       ///< image coordinate of index 0 when the picture is read
  int writeOrigin = 0;  ///< image coordinate of index 0 when the picture is a target
  int edge = kColour;
  int lo = 0;  ///< the box, both ends inclusive, in indices
  int hi = -1;
};

struct Picture {
  Axis x;
  Axis y;
  Pixel outside{};
  std::vector<Pixel> pixels;  ///< row 0 is the bottom
  bool hasMemory = false;     ///< false for an absent image
};

/// An axis of n pixels with the box over all of them.
Axis WholeAxis(int size, int origin = 0, int edge = kColour);

/// The two ends in any order, each clamped to the pixels.
void SetBounds(Axis& axis, int first, int last);

/// Maps an index into the box by the edge method; none if it is outside. Every index of an axis without pixels is
/// outside.
std::optional<int> Lookup(const Axis& axis, std::int64_t index);

/// A picture of zeros.
Picture Blank(const Axis& x, const Axis& y);
Picture Blank(int width, int height);

/// The pixel at an image coordinate, by box, edge methods and outside colour.
Pixel At(const Picture& picture, std::int64_t x, std::int64_t y);

/// Whether an image coordinate maps to a pixel of the box.
bool Exists(const Picture& picture, std::int64_t x, std::int64_t y);

/// The pixel that a stage writes at an image coordinate, regardless of box and edge methods.
Pixel& Target(Picture& picture, int x, int y);

/// The pixel at an index, regardless of box and edge methods.
Pixel& Stored(Picture& picture, int column, int row);
const Pixel& Stored(const Picture& picture, int column, int row);

/// Without rows or columns.
bool IsEmpty(const Picture& picture);

}  // namespace model
