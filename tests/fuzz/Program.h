// The body of a fuzzer's program.
#pragma once

#include <cstdio>
#include <exception>

namespace vblur::test {

// The exit code of `run`, or 1 and a line for an exception, which leaves the number or the seed before it on the
// terminal.
template <typename Run>
int RunProgram(const Run& run, int argc, char** argv) noexcept {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "\n%s\n", error.what());
    return 1;
  }
}

}  // namespace vblur::test
