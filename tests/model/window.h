// The rectangle of image coordinates that a stage works on.
#pragma once

#include <optional>

#include "picture.h"

namespace model {

/// All four ends inclusive. Empty if an end is before its start.
struct Window {
  int x1 = 0;
  int y1 = 0;
  int x2 = -1;
  int y2 = -1;
};

/// The whole target.
Window WholeWindow(const Picture& target);

/// Each end clamped to the target: a window beside it becomes the nearest row or column. Without a window, the whole
/// target. Stages that write take windows settled on their target.
Window Settle(const std::optional<Window>& window, const Picture& target);

/// Moves each side outward, in wrapping arithmetic.
Window Widen(const Window& window, int byX, int byY);

}  // namespace model
