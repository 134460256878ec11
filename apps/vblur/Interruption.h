// Ctrl-C, SIGTERM, SIGHUP and a broken pipe: the first stops the work, which cleans up; the second ends the process at
// once, as does work that takes longer than a moment to stop. Neither leaves a part of a file. Signals that the process
// was started to ignore stay ignored.
#pragma once

#include <array>
#include <csignal>

#include <time.h>

#include "apps/vblur/Terminal.h"
#include "host/hosted/ExecuteContext.h"

namespace vblur::cli {

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
  static constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGALRM};

  host::ExecuteContext context_;
  std::array<struct sigaction, kSignals.size()> before_{};
  timer_t deadline_{};
};

}  // namespace vblur::cli
