#include "apps/vblur/StandardStreams.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include "apps/vblur/Interruption.h"
#include "apps/vblur/SystemStreams.h"
#include "host/base/Descriptors.h"

namespace vblur::cli {

void OpenStandardStreams() {
  PrepareStreams();
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
  if (host::Flush(stdout) || code != host::ExitCode::Done) return status;
  if (IsPipeBroken()) return kEndedBySignal + kBrokenPipe;
  terminal.Fail("cannot write to the standard output" +
                (errno != 0 ? ": " + std::generic_category().message(errno) : std::string()));
  return static_cast<int>(host::ExitCode::CannotWrite);
}

}  // namespace vblur::cli
