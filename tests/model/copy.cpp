#include "copy.h"

#include <algorithm>

#include "arithmetic.h"

namespace model {
namespace {

void Clear(Picture& output, int x1, int x2, int y) {
  for (int x = x1; x <= x2; ++x)
    Target(output, x, y) = Pixel{};
}

}  // namespace

void CopyPicture(const Picture& input, Picture& output, const Window& window) {
  CopyChannels(input, output, {true, true, true, true}, window);
}

void CopyChannels(const Picture& input, Picture& output, const std::array<bool, 4>& channels, const Window& window) {
  for (int y = window.y1; y <= window.y2; ++y) {
    for (int x = window.x1; x <= window.x2; ++x) {
      const Pixel from = At(input, x, y);
      Pixel& to = Target(output, x, y);
      for (std::size_t c = 0; c < 4; ++c) {
        if (channels[c]) to[c] = from[c];
      }
    }
  }
}

void BlankOutside(Picture& output, const Rectangle& kept, const Window& window) {
  const auto row = [&](int y) { return std::clamp(y, window.y1, window.y2); };
  // Half-open columns: a rectangle may begin one column past the window.
  const int left = std::clamp(kept.left, window.x1, window.x2 + 1);
  const int right = std::clamp(kept.right, window.x1, window.x2 + 1);
  for (int y = window.y1; y <= row(Subtract(kept.bottom, 1)); ++y)
    Clear(output, window.x1, window.x2, y);
  for (int y = row(kept.bottom); y <= row(Subtract(kept.top, 1)); ++y) {
    Clear(output, window.x1, left - 1, y);
    Clear(output, right, window.x2, y);
  }
  for (int y = row(kept.top); y <= window.y2; ++y)
    Clear(output, window.x1, window.x2, y);
}

}  // namespace model
