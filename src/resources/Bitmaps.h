// The pictures of the server's module by number.
#pragma once

#include <span>

#include "platform/Module.h"

namespace vblur::resources {

// 102: the effect's picture, 48 by 48 pixels: a disc, sharp on the left and blurred on the right.
std::span<const ModuleBitmap> Bitmaps();

}  // namespace vblur::resources
