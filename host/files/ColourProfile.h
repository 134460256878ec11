// Which pixels a colour profile is for.
#pragma once

#include <string_view>

#include "host/files/OutputFormat.h"

namespace vblur::host {

// The layouts of pixels that a profile of these bytes is for; none for a damaged one.
SetOf<PixelLayout> LayoutsOfProfile(std::string_view bytes);

}  // namespace vblur::host
