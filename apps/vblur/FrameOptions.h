// Options for the frames to render and their geometry and time.
#pragma once

#include <CLI/CLI.hpp>

#include "host/jobs/Job.h"

namespace vblur::cli {

// `--frames` alone: a job file's frames can be narrowed with it too.
void AddFrameRangeOption(CLI::App& app, std::optional<host::FrameRange>& frames);

// The others: `--depth`, `--field`, `--roi`, `--time`, ... The job must outlive the parsing.
void AddFrameOptions(CLI::App& app, host::Job& job);

}  // namespace vblur::cli
