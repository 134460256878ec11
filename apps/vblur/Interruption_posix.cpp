#include "apps/vblur/Interruption.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

#include <time.h>

#include "apps/vblur/CaughtSignal.h"

namespace vblur::cli {

namespace {

static_assert(kEndOfTerminal == SIGHUP && kControlC == SIGINT && kBrokenPipe == SIGPIPE);

std::atomic<timer_t*> timer = nullptr;

extern "C" void StopWork(int signal) {
  const int kept = errno;
  if (!CatchSignal(signal)) {
    // Each further write to a broken pipe raises the signal again.
    if (signal != SIGPIPE) EndAtOnce();
    return;
  }
  const itimerspec patience{{0, 0}, {0, kPatienceMilliseconds * 1'000'000L}};
  if (timer_t* const deadline = timer; deadline != nullptr) ::timer_settime(*deadline, 0, &patience, nullptr);
  errno = kept;
}

extern "C" void MissDeadline(int /*signal*/) {
  if (CaughtSignal() != 0) EndAtOnce();
}

}  // namespace

class Interruption::Handlers {
 public:
  Handlers() {
    sigevent event{};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGALRM;
    if (::timer_create(CLOCK_MONOTONIC, &event, &deadline_) == 0) timer = &deadline_;
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
      ::sigaction(kSignals[i], nullptr, &before_[i]);
      if (before_[i].sa_handler == SIG_IGN && kSignals[i] != SIGALRM) continue;
      struct sigaction action {};
      action.sa_handler = kSignals[i] == SIGALRM ? MissDeadline : StopWork;
      action.sa_flags = SA_RESTART;
      ::sigaction(kSignals[i], &action, nullptr);
    }
  }
  ~Handlers() {
    if (timer.exchange(nullptr) != nullptr) ::timer_delete(deadline_);
    for (std::size_t i = 0; i < kSignals.size(); ++i)
      ::sigaction(kSignals[i], &before_[i], nullptr);
  }
  Handlers(const Handlers&) = delete;
  Handlers& operator=(const Handlers&) = delete;

 private:
  static constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGALRM};

  std::array<struct sigaction, kSignals.size()> before_{};
  timer_t deadline_{};
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
