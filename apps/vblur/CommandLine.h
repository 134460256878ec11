// The whole program behind main.
#pragma once

namespace vblur::cli {

// Returns the exit code.
int RunCommandLine(int argc, char** argv);

}  // namespace vblur::cli
