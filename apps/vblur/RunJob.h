// Renders a job for a command: progress, warnings, Ctrl-C and the exit code.
#pragma once

#include "apps/vblur/RunOptions.h"
#include "apps/vblur/Terminal.h"
#include "host/jobs/Job.h"

namespace vblur::cli {

// Settings of the terminal.
void ApplyGlobalOptions(const GlobalOptions& global, Terminal& terminal);
void ApplyProgress(const RunOptions& run, Terminal& terminal);

// Reads the standard input if the job does, within the memory that is allowed. Throws host::Failure.
void TakeStandardInput(const host::Job& job, const RunOptions& run, const Terminal& terminal);

// `command` runs it: its options are the advice for failed frames. Throws host::Failure for what is wrong before the
// first frame.
host::ExitCode RunJob(const host::Job& job, const GlobalOptions& global, const RunOptions& run, Terminal& terminal,
                      const CLI::App& command);

}  // namespace vblur::cli
