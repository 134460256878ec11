// The pictures of the server's module by number.
#pragma once

#include <span>

#include "platform/Module.h"

namespace vblur::resources {

// 102: the effect's picture, 48 by 48 pixels: a disc, sharp on the left and blurred on the right.
// 103: the logo of the help page, 64 by 64 pixels: a V, likewise.
std::span<const ModuleBitmap> Bitmaps();

}  // namespace vblur::resources
