#include "apps/vblur/Interruption.h"

#include <atomic>
#include <csignal>

namespace vblur::cli {

namespace {

std::atomic<host::ExecuteContext*> target = nullptr;

extern "C" void StopRender(int signal) {
  if (host::ExecuteContext* context = target.load()) context->Stop();
  std::signal(signal, SIG_DFL);
}

}  // namespace

Interruption::Interruption() {
  target = &context_;
  std::signal(SIGINT, StopRender);
  std::signal(SIGTERM, StopRender);
#ifdef SIGXFSZ
  // A file that grows too large is then an error of the write, not the end of the program.
  std::signal(SIGXFSZ, SIG_IGN);
#endif
}

Interruption::~Interruption() {
  std::signal(SIGINT, SIG_DFL);
  std::signal(SIGTERM, SIG_DFL);
  target = nullptr;
}

}  // namespace vblur::cli
