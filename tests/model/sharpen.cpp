#include "sharpen.h"

#include "arithmetic.h"

namespace model {

std::int32_t Reflected(std::int32_t source, std::int32_t blurred, Depth depth) {
  if (depth == Depth::Float) return BitsOf(2.0f * FloatOf(source) - FloatOf(blurred));
  const Range range = RangeOf(depth);
  const std::int32_t twice = Truncate(static_cast<float>(source) * 2.0f);
  return Limit(Subtract(twice, blurred), range.min, range.max);
}

void Sharpen(const Picture& source, Picture& blurred, Depth depth, const Window& window) {
  for (int y = window.y1; y <= window.y2; ++y) {
    for (int x = window.x1; x <= window.x2; ++x) {
      const Pixel from = At(source, x, y);
      Pixel& to = Target(blurred, x, y);
      for (std::size_t c = 0; c < 4; ++c)
        to[c] = Reflected(from[c], to[c], depth);
    }
  }
}

}  // namespace model
