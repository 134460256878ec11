#include "apps/vblur/Interruption.h"

#include <mutex>

#include "apps/vblur/CaughtSignal.h"
#include "host/base/Descriptors_windows.h"

#include <windows.h>

namespace vblur::cli {

namespace {

// Handlers run in threads of their own, possibly begun just before they were unhooked: they hold this while they look
// whether there is work to stop, and until they have stopped it. A handler that ends the process may meet itself, where
// its last words break a pipe.
std::recursive_mutex handling;
bool hasWork = false;

// Ends the process unless the work stops in time. It lasts as long as the process: a handler may be about to set it.
PTP_TIMER deadline = nullptr;
// Set while no work is to be stopped.
HANDLE idle = nullptr;

void StartDeadline() {
  // In units of 100 ns, negative from now on.
  LARGE_INTEGER due{};
  due.QuadPart = -std::int64_t{kPatienceMilliseconds} * 10'000;
  FILETIME time{due.LowPart, static_cast<DWORD>(due.HighPart)};
  if (deadline != nullptr) SetThreadpoolTimer(deadline, &time, 0, 0);
}

void CALLBACK MissDeadline(PTP_CALLBACK_INSTANCE /*instance*/, void* /*context*/, PTP_TIMER /*timer*/) {
  const std::lock_guard lock(handling);
  if (hasWork) EndAtOnce();
}

// False without work.
bool Handle(int signal, bool endsTheSecondTime) {
  const std::lock_guard lock(handling);
  if (!hasWork) return false;
  if (CatchSignal(signal)) {
    StartDeadline();
  } else if (endsTheSecondTime) {
    EndAtOnce();
  }
  return true;
}

void BreakPipe() {
  Handle(kBrokenPipe, false);
}

// In a thread of its own.
BOOL CALLBACK StopWork(DWORD event) {
  const bool isEnd = event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT;
  if (!Handle(isEnd ? kEndOfTerminal : kControlC, true)) return FALSE;
  if (!isEnd) return TRUE;
  // The system ends the process when this returns.
  WaitForSingleObject(idle, INFINITE);
  Sleep(kPatienceMilliseconds);
  return TRUE;
}

}  // namespace

class Interruption::Handlers {
 public:
  Handlers() {
    if (idle == nullptr) idle = CreateEventW(nullptr, TRUE, TRUE, nullptr);
    ResetEvent(idle);
    if (deadline == nullptr) deadline = CreateThreadpoolTimer(MissDeadline, nullptr, nullptr);
    {
      const std::lock_guard lock(handling);
      hasWork = true;
    }
    host::WhenPipesBreak(BreakPipe);
    SetConsoleCtrlHandler(StopWork, TRUE);
  }
  ~Handlers() {
    SetConsoleCtrlHandler(StopWork, FALSE);
    host::WhenPipesBreak(nullptr);
    const std::lock_guard lock(handling);
    hasWork = false;
    if (deadline != nullptr) SetThreadpoolTimer(deadline, nullptr, 0, 0);
    SetEvent(idle);
  }
  Handlers(const Handlers&) = delete;
  Handlers& operator=(const Handlers&) = delete;
};

Interruption::Interruption(const Terminal& terminal) {
  WatchSignals(context_, terminal);
  handlers_ = std::make_unique<Handlers>();
}

Interruption::~Interruption() {
  handlers_.reset();
  LeaveSignals();
}

int Interruption::Caught() {
  return CaughtSignal();
}

}  // namespace vblur::cli
