#include "masks.h"

namespace model {

std::int32_t MaskedComponent(Depth depth, std::int32_t source, std::int32_t effect, std::int32_t mask) {
  if (depth != Depth::Float) {
    if (mask == 0) return source;
    if (mask == RangeOf(depth).top) return effect;
  }
  return MixWhole(depth, effect, source, mask);
}

void ApplyMask(Depth depth, const Picture& source, const Picture& mask, Picture& output, const Window& window) {
  for (int y = window.y1; y <= window.y2; ++y) {
    for (int x = window.x1; x <= window.x2; ++x) {
      const Pixel from = Exists(source, x, y) ? At(source, x, y) : Pixel{};
      const std::int32_t amount = Exists(mask, x, y) ? At(mask, x, y)[0] : 0;
      Pixel& to = Target(output, x, y);
      for (std::size_t c = 0; c < 4; ++c)
        to[c] = MaskedComponent(depth, from[c], to[c], amount);
    }
  }
}

}  // namespace model
