// Copies and fills.
#pragma once

#include <array>

#include "picture.h"
#include "window.h"

namespace model {

/// Copies every pixel of a settled window, read through the input's box and edge methods.
void CopyPicture(const Picture& input, Picture& output, const Window& window);

/// Only the chosen channels: red, green, blue, alpha.
void CopyChannels(const Picture& input, Picture& output, const std::array<bool, 4>& channels, const Window& window);

/// A rectangle of image coordinates, right and top exclusive. The ends need not be in order.
struct Rectangle {
  int left = 0;
  int right = 0;
  int bottom = 0;
  int top = 0;
};

/// Clears to transparent black what lies outside the rectangle, in three bands of rows: below, beside and above. Each
/// band has at least one row, so the first and the last row of the window are always cleared.
void BlankOutside(Picture& output, const Rectangle& kept, const Window& window);

}  // namespace model
