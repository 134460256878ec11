// Standard streams that are closed, full or not read to their end.
#pragma once

#include "apps/vblur/Terminal.h"
#include "host/base/Failure.h"

namespace vblur::cli {

// Puts something in the place of standard streams that the process was started without, so that no file that it opens
// takes their place. Writing to one still fails.
void OpenStandardStreams();

// Completes the standard output. Returns the exit status of the program: what `code` says, or that of an output that
// could not be written, which is told unless its reader has left.
int FinishStandardOutput(host::ExitCode code, Terminal& terminal);

}  // namespace vblur::cli
