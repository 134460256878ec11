// Scripts by which shells complete the program's commands, options and values, made from its options.
#pragma once

#include <string>
#include <vector>

#include "apps/vblur/CommandTable.h"

namespace vblur::cli {

std::string BashCompletion(const std::vector<CommandEntry>& commands);
std::string ZshCompletion(const std::vector<CommandEntry>& commands);
std::string FishCompletion(const std::vector<CommandEntry>& commands);

}  // namespace vblur::cli
