// What handlers of signals work with.
#pragma once

#include "apps/vblur/Terminal.h"
#include "host/hosted/ExecuteContext.h"

namespace vblur::cli {

// A frame's threads poll every few rows, format libraries every few hundred, and some not at all.
inline constexpr int kPatienceMilliseconds = 700;

// Between these two, signals stop the work of the context, and EndAtOnce tells the terminal.
void WatchSignals(host::ExecuteContext& context, const Terminal& terminal);
void LeaveSignals();

// The functions below are safe in handlers of signals, from any thread.

// The first signal of the process, 0 for none.
int CaughtSignal() noexcept;
// Stops the work at the first signal. False for any other.
bool CatchSignal(int signal) noexcept;
// Removes what is written in part and ends the process as the first signal does.
[[noreturn]] void EndAtOnce() noexcept;

}  // namespace vblur::cli
