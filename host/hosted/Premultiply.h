// Colours multiplied by their alpha, and divided by it again: to nearest, halves away from zero, limited to what the
// depth carries.
#pragma once

#include "host/hosted/HostImage.h"

namespace vblur::host {

// In rows of four components. Alpha stays as it is.
void MultiplyByAlpha(HostImage& image, HostRows rows);
// Whether a pixel of an alpha of 0 or less has a colour: multiplied by its alpha, it is lost.
bool HasHiddenColours(const HostImage& image, HostRows rows);
// Where alpha is 0 or less, colours stay as they are.
void DivideByAlpha(HostImage& image, HostRows rows);

}  // namespace vblur::host
