// The texts of the server's module by number. Texts that belong to a property come from the property
// table: its name, its hint, and the entries of its list behind them.
#pragma once

#include <span>
#include <string_view>

#include "platform/Module.h"

namespace vblur::resources {

// Texts that dialogs show as well.
inline constexpr std::string_view kResetText = "Reset";
inline constexpr std::string_view kCropColourText = "Crop Colour";

std::span<const ModuleString> Strings();

}  // namespace vblur::resources
