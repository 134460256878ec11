// The program: parses the command line and runs the command.
#pragma once

namespace vblur::cli {

// Returns the exit code.
int RunCommandLine(int argc, char** argv);

}  // namespace vblur::cli
