// Standard streams that are closed, full or not read to their end.
#pragma once

#include "apps/vblur/Terminal.h"
#include "host/base/Failure.h"

namespace vblur::cli {

// PrepareStreams, and a buffer that holds all that a command prints.
void OpenStandardStreams();

// Completes the standard output. Returns the exit status of the program: what `code` says, or that of an output that
// could not be written, which is reported unless the pipe is broken.
int FinishStandardOutput(host::ExitCode code, Terminal& terminal);

}  // namespace vblur::cli
