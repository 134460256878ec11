#include "apps/vblur/CaughtSignal.h"

#include <array>
#include <atomic>
#include <span>
#include <string>

#include "apps/vblur/Interruption.h"
#include "apps/vblur/SystemStreams.h"
#include "host/base/Descriptors.h"
#include "host/base/PartFiles.h"

namespace vblur::cli {

namespace {

std::atomic<host::ExecuteContext*> target = nullptr;
std::atomic<int> caught = 0;
std::atomic<int> screen = -1;
std::array<char, 128> lastWords{};
std::size_t lastWordsSize = 0;

}  // namespace

void WatchSignals(host::ExecuteContext& context, const Terminal& terminal) {
  const std::string words = terminal.Line("error", "interrupted");
  lastWordsSize = words.copy(lastWords.data(), lastWords.size());
  screen = NumberOf(terminal.Stream());
  target = &context;
}

void LeaveSignals() {
  target = nullptr;
  screen = -1;
}

int CaughtSignal() noexcept {
  return caught;
}

bool CatchSignal(int signal) noexcept {
  int none = 0;
  if (!caught.compare_exchange_strong(none, signal)) return false;
  if (host::ExecuteContext* const context = target; context != nullptr) context->Stop();
  return true;
}

void EndAtOnce() noexcept {
  host::RemoveNotedParts();
  if (caught != kBrokenPipe && screen >= 0) {
    // The result is ignored: the process ends.
    host::WriteSome(screen, std::span(lastWords).first(lastWordsSize));
  }
  EndProcess(128 + caught);
}

}  // namespace vblur::cli
