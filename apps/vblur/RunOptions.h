// The options of commands that render: existing files, failed frames, progress.
#pragma once

#include <cstdint>
#include <string>

#include <CLI/CLI.hpp>

#include "host/sequence/SequenceRenderer.h"

namespace vblur::cli {

struct GlobalOptions {
  bool quiet = false;
  int verbose = 0;           // 1: a line for each frame; 2: the calls on the effect as well
  std::int32_t threads = 0;  // 0: as many as the machine has processors
  std::string cpu;           // empty: the best that the machine has
  std::string server;        // empty: that of this installation
};

enum class ProgressChoice { Automatic, None, Bar, Lines, Json };

struct RunOptions {
  host::RenderOptions render;
  std::string overwrite;  // as given
  ProgressChoice progress = ProgressChoice::Automatic;
};

void AddGlobalOptions(CLI::App& app, GlobalOptions& options);
void AddRunOptions(CLI::App& app, RunOptions& options);

}  // namespace vblur::cli
