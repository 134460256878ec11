// The program: parses the command line and runs the command.
#pragma once

#include <string>
#include <vector>

namespace vblur::cli {

// Who puts the files' names in the place of names with * and ?.
enum class Wildcards { Shell, Program };

// The arguments are UTF-8 on Windows, and what the system gave elsewhere. Returns the exit code.
int RunCommandLine(std::vector<std::string> arguments, Wildcards wildcards);

}  // namespace vblur::cli
