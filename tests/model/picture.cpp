#include "picture.h"

#include <algorithm>

namespace model {
namespace {

/// Position of v in a tiling of n, 0..n-1 also for negative v.
std::int64_t Modulo(std::int64_t v, std::int64_t n) {
  return ((v % n) + n) % n;
}

}  // namespace

Axis WholeAxis(int size, int origin, int edge) {
  Axis axis;
  axis.size = size;
  axis.origin = origin;
  axis.writeOrigin = origin;
  axis.edge = edge;
  SetBounds(axis, 0, size);
  return axis;
}

void SetBounds(Axis& axis, int first, int last) {
  const int end = axis.size - 1;
  if (end < 0) {
    axis.lo = axis.hi = end;
    return;
  }
  axis.lo = std::clamp(std::min(first, last), 0, end);
  axis.hi = std::clamp(std::max(first, last), 0, end);
}

std::optional<int> Lookup(const Axis& axis, std::int64_t index) {
  if (axis.size <= 0) return std::nullopt;
  if (index >= axis.lo && index <= axis.hi) return static_cast<int>(index);
  const std::int64_t n = axis.hi - axis.lo + 1;
  const std::int64_t v = index - axis.lo;
  switch (axis.edge) {
    case kRepeat: return v < 0 ? axis.lo : axis.hi;
    case kReflect: {
      // The box and its mirror image together repeat every 2n.
      const std::int64_t place = Modulo(v, 2 * n);
      return axis.lo + static_cast<int>(place < n ? place : 2 * n - 1 - place);
    }
    case kWrap: return axis.lo + static_cast<int>(Modulo(v, n));
    default: return std::nullopt;
  }
}

Picture Blank(const Axis& x, const Axis& y) {
  Picture picture;
  picture.x = x;
  picture.y = y;
  const int width = std::max(x.size, 0);
  const int height = std::max(y.size, 0);
  picture.pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), Pixel{});
  picture.hasMemory = !picture.pixels.empty();
  return picture;
}

Picture Blank(int width, int height) {
  return Blank(WholeAxis(width), WholeAxis(height));
}

Pixel At(const Picture& picture, std::int64_t x, std::int64_t y) {
  const std::optional<int> column = Lookup(picture.x, x - picture.x.origin);
  const std::optional<int> row = Lookup(picture.y, y - picture.y.origin);
  if (!column || !row) return picture.outside;
  return Stored(picture, *column, *row);
}

bool Exists(const Picture& picture, std::int64_t x, std::int64_t y) {
  return Lookup(picture.x, x - picture.x.origin) && Lookup(picture.y, y - picture.y.origin);
}

Pixel& Target(Picture& picture, int x, int y) {
  return Stored(picture, x - picture.x.writeOrigin, y - picture.y.writeOrigin);
}

Pixel& Stored(Picture& picture, int column, int row) {
  const auto width = static_cast<std::size_t>(picture.x.size);
  return picture.pixels.at(static_cast<std::size_t>(row) * width + static_cast<std::size_t>(column));
}

const Pixel& Stored(const Picture& picture, int column, int row) {
  const auto width = static_cast<std::size_t>(picture.x.size);
  return picture.pixels.at(static_cast<std::size_t>(row) * width + static_cast<std::size_t>(column));
}

bool IsEmpty(const Picture& picture) {
  return picture.x.size < 1 || picture.y.size < 1;
}

}  // namespace model
