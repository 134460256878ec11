// A property page as text: its title, and each control with its name, value, range or entries, and state.
#pragma once

#include <string>

#include "host/pages/EffectPages.h"

namespace vblur::host {

// Lines that end with a line feed. With `toolTips` each control's follows it.
std::string FormatPage(const OpenedPage& page, double time, bool toolTips);

}  // namespace vblur::host
