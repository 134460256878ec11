// The dialogs of the server's property pages by number, children without a title.
#pragma once

#include <span>

#include "platform/Module.h"

namespace vblur::resources {

// A control stands behind its label. Names and ranges of properties come from the property table.
std::span<const ModuleDialog> Dialogs();

}  // namespace vblur::resources
