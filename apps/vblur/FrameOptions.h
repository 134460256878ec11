// Options for the frames to render and their geometry and time.
#pragma once

#include <CLI/CLI.hpp>

#include "host/jobs/FrameRangeText.h"
#include "host/jobs/Job.h"

namespace vblur::cli {

// `--frames` of a command that draws a sequence: one range.
void AddFrameRangeOption(CLI::App& app, std::optional<host::FrameRange>& frames);

// `--frames` and `--renumber` of a command that renders; they also change a job file's. `frame` says in the help which
// one gets the number.
void AddFramesOption(CLI::App& app, std::optional<host::FrameChoice>& frames);
void AddRenumberOption(CLI::App& app, const std::string& frame, std::optional<std::int32_t>& number);
// The chosen frames of a job; looks for its files where the choice depends on them.
host::FrameList FramesOf(const host::FrameChoice& choice, const host::Job& job);

// All of them: `--depth`, `--field`, `--roi`, `--time`, ... Job and frames must outlive the parsing.
void AddFrameOptions(CLI::App& app, host::Job& job, std::optional<host::FrameChoice>& frames);

}  // namespace vblur::cli
