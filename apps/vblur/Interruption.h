// Ctrl-C, SIGTERM, SIGHUP and a broken pipe, on Windows also Ctrl-Break and the end of the console: the first stops the
// work, which cleans up; the second ends the process at once, as does work that takes longer than a moment to stop.
// Neither leaves a part of a file. Signals that the process was started to ignore stay ignored.
#pragma once

#include <memory>

#include "apps/vblur/Terminal.h"
#include "host/hosted/ExecuteContext.h"

namespace vblur::cli {

// Signals by their usual numbers, which are part of the exit status.
inline constexpr int kEndOfTerminal = 1;
inline constexpr int kControlC = 2;
inline constexpr int kBrokenPipe = 13;

// One at a time in a process.
class Interruption {
 public:
  // `terminal` must outlive it.
  explicit Interruption(const Terminal& terminal);
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  host::ExecuteContext& Context() { return context_; }

  // The first signal of the process, 0 for none.
  static int Caught();

 private:
  // The system's, between which all of this holds.
  class Handlers;

  host::ExecuteContext context_;
  std::unique_ptr<Handlers> handlers_;
};

}  // namespace vblur::cli
