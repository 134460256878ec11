// The main function of a tool: one line for a failure, and its exit code.
#pragma once

#include <cstdio>
#include <exception>

#include "host/base/Failure.h"

namespace vblur::hashes {

inline int RunTool(int (*run)(int, char**), int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const host::Failure& failure) {
    std::fprintf(stderr, "hashes: %s\n", failure.what());
    return static_cast<int>(failure.Code());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "hashes: %s\n", error.what());
    return 1;
  }
}

}  // namespace vblur::hashes
