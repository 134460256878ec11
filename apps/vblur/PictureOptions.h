// Options for further pictures, and for the use of the effect.
#pragma once

#include <CLI/CLI.hpp>

#include "host/jobs/Job.h"

namespace vblur::cli {

// `--to`, `--mask`, `--mask-offset`, `--use`. The job must outlive the parsing.
void AddPictureOptions(CLI::App& app, host::Job& job);

}  // namespace vblur::cli
