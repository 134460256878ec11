#include "host/base/Processes.h"

#include <array>
#include <cerrno>

#include <signal.h>
#include <unistd.h>

namespace vblur::host {

std::string MachineName() {
  std::array<char, 256> text{};
  if (::gethostname(text.data(), text.size() - 1) != 0) return {};
  return text.data();
}

std::uint32_t OwnProcess() {
  return static_cast<std::uint32_t>(::getpid());
}

bool HasEnded(std::uint32_t process) {
  return ::kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH;
}

}  // namespace vblur::host
