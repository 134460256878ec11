// Setups of programs that only these systems have.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include "tests/support/process/Process.h"

namespace vblur::cli {

inline Process::Setup Limited(__rlimit_resource resource, rlim_t most) {
  return [resource, most] {
    const rlimit limit{most, most};
    ::setrlimit(resource, &limit);
  };
}
// A stream that goes to a file.
inline Process::Setup Into(int stream, const char* file) {
  return [=] {
    const int opened = ::open(file, O_WRONLY);
    ::dup2(opened, stream);
    ::close(opened);
  };
}
inline Process::Setup Ignoring(int signal) {
  return [signal] { ::signal(signal, SIG_IGN); };
}

}  // namespace vblur::cli
