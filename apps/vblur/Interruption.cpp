#include "apps/vblur/Interruption.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <string>

#include <unistd.h>

#include "host/base/PartFiles.h"

namespace vblur::cli {

namespace {

// A frame's threads poll every few rows, format libraries every few hundred, and some not at all.
constexpr long kPatienceNanoseconds = 700'000'000;

// What signal handlers work with.
std::atomic<host::ExecuteContext*> target = nullptr;
std::atomic<int> caught = 0;
std::atomic<timer_t*> timer = nullptr;
std::atomic<int> screen = -1;
std::array<char, 128> lastWords{};
std::size_t lastWordsSize = 0;

[[noreturn]] void EndAtOnce(int signal) {
  host::RemoveNotedParts();
  if (signal != SIGPIPE && screen >= 0) {
    // The result is ignored: the process ends.
    [[maybe_unused]] const auto written = ::write(screen, lastWords.data(), lastWordsSize);
  }
  ::_exit(128 + signal);
}

extern "C" void StopWork(int signal) {
  const int kept = errno;
  int none = 0;
  if (!caught.compare_exchange_strong(none, signal)) {
    // Each further write to a broken pipe raises the signal again.
    if (signal != SIGPIPE) EndAtOnce(none);
    return;
  }
  if (host::ExecuteContext* const context = target; context != nullptr) context->Stop();
  const itimerspec patience{{0, 0}, {0, kPatienceNanoseconds}};
  if (timer_t* const deadline = timer; deadline != nullptr) ::timer_settime(*deadline, 0, &patience, nullptr);
  errno = kept;
}

extern "C" void MissDeadline(int /*signal*/) {
  if (const int first = caught; first != 0) EndAtOnce(first);
}

}  // namespace

Interruption::Interruption(const Terminal& terminal) {
  const std::string words = terminal.Line("error", "interrupted");
  lastWordsSize = words.copy(lastWords.data(), lastWords.size());
  screen = ::fileno(terminal.Stream());
  target = &context_;
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

Interruption::~Interruption() {
  if (timer.exchange(nullptr) != nullptr) ::timer_delete(deadline_);
  for (std::size_t i = 0; i < kSignals.size(); ++i)
    ::sigaction(kSignals[i], &before_[i], nullptr);
  target = nullptr;
  screen = -1;
}

int Interruption::Caught() {
  return caught;
}

}  // namespace vblur::cli
