#include "apps/vblur/StandardStreams.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "apps/vblur/Interruption.h"

namespace vblur::cli {

void OpenStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(stream, F_GETFD) >= 0) continue;
    // The lowest free number is this one. Opened for the wrong direction, so that its use fails.
    [[maybe_unused]] const int taken = ::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
  // A file that grows too large is then an error of the write, not the end of the program.
  std::signal(SIGXFSZ, SIG_IGN);
  // All that a command prints is then written at its end, where the error is known.
  static std::array<char, 1 << 18> buffer;
  std::setvbuf(stdout, buffer.data(), _IOFBF, buffer.size());
}

int FinishStandardOutput(host::ExitCode code, Terminal& terminal) {
  constexpr int kEndedBySignal = 128;
  const int status = code == host::ExitCode::Interrupted && Interruption::Caught() != 0
                         ? kEndedBySignal + Interruption::Caught()
                         : static_cast<int>(code);
  errno = 0;
  const bool flushed = std::fflush(stdout) == 0;
  if ((flushed && std::ferror(stdout) == 0) || code != host::ExitCode::Done) return status;
  if (errno == EPIPE) return kEndedBySignal + SIGPIPE;
  terminal.Fail("cannot write to the standard output" +
                (errno != 0 ? ": " + std::generic_category().message(errno) : std::string()));
  return static_cast<int>(host::ExitCode::CannotWrite);
}

}  // namespace vblur::cli
