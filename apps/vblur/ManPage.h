// The manual page, made from the program's options.
#pragma once

#include <string>
#include <vector>

#include "apps/vblur/CommandTable.h"

namespace vblur::cli {

// In the man macros of troff, one section for each command.
std::string ManPage(const std::vector<CommandEntry>& commands, const std::string& version);

}  // namespace vblur::cli
