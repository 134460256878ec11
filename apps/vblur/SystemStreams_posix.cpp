#include "apps/vblur/SystemStreams.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <initializer_list>

#include <fcntl.h>
#include <unistd.h>

namespace vblur::cli {

void PrepareStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(stream, F_GETFD) >= 0) continue;
    // The lowest free number is this one. Opened for the wrong direction, so that its use fails.
    [[maybe_unused]] const int taken = ::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
  // A file that grows too large is then an error of the write, not the end of the program.
  std::signal(SIGXFSZ, SIG_IGN);
}

void RestoreConsole() noexcept {}

void EndProcess(int status) noexcept {
  std::_Exit(status);
}

std::FILE* OwnErrorStream() {
  const int own = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
  std::FILE* stream = own >= 0 ? ::fdopen(own, "w") : nullptr;
  return stream ? stream : stderr;
}

int NumberOf(std::FILE* stream) {
  return ::fileno(stream);
}

bool IsPipeBroken() {
  return errno == EPIPE;
}

}  // namespace vblur::cli
