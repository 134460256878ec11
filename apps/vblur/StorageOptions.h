// How the output is stored, where that differs from the input.
#pragma once

#include <CLI/CLI.hpp>

#include "host/jobs/Job.h"

namespace vblur::cli {

// The command line's settings of a job's output.
struct StorageChanges {
  host::OutputStorage storage;
  bool premultipliesAround = false;
  bool linear = false;
  bool steady = false;

  void ApplyTo(host::Job& job) const;
};

void AddStorageOptions(CLI::App& app, StorageChanges& changes);

}  // namespace vblur::cli
