#include "window.h"

#include <algorithm>

#include "arithmetic.h"

namespace model {

Window WholeWindow(const Picture& target) {
  const int x = target.x.writeOrigin;
  const int y = target.y.writeOrigin;
  return {x, y, x + target.x.size - 1, y + target.y.size - 1};
}

Window Settle(const std::optional<Window>& window, const Picture& target) {
  const Window whole = WholeWindow(target);
  if (!window || IsEmpty(target)) return whole;
  return {std::clamp(window->x1, whole.x1, whole.x2), std::clamp(window->y1, whole.y1, whole.y2),
          std::clamp(window->x2, whole.x1, whole.x2), std::clamp(window->y2, whole.y1, whole.y2)};
}

Window Widen(const Window& window, int byX, int byY) {
  return {Subtract(window.x1, byX), Subtract(window.y1, byY), Add(window.x2, byX), Add(window.y2, byY)};
}

}  // namespace model
