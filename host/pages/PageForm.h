// A property page as text: its title, and each control with its name, value, range or entries, and state.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "host/pages/EffectPages.h"

namespace vblur::host {

// Lines that end with a line feed. With `toolTips` each control's follows it.
std::string FormatPage(const OpenedPage& page, double time, bool toolTips);

// `expected one of the pages A, B, found "C"`.
std::string ExpectedPage(std::span<const std::string_view> pages, std::string_view found);

}  // namespace vblur::host
