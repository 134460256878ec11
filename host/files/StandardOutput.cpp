#include "host/files/StandardOutput.h"

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <vector>

#include <unistd.h>

#include "host/base/Failure.h"

namespace vblur::host {

namespace {

const std::filesystem::path kOutput = "-";

[[noreturn]] void RefuseSystemError() {
  RefuseToWrite(kOutput, std::generic_category().message(errno));
}

}  // namespace

void RequirePictureOutput() {
  if (::isatty(STDOUT_FILENO) != 0) RefuseToWrite(kOutput, "it is a terminal, a file or a pipe was expected");
}

std::unique_ptr<UnnamedFile> MakeFileForOutput() {
  try {
    return std::make_unique<UnnamedFile>();
  } catch (const std::system_error& error) {
    RefuseToWrite(kOutput, error.what());
  }
}

void SendToStandardOutput(const UnnamedFile& file) {
  std::fflush(stdout);
  std::vector<char> part(std::size_t{1} << 16);
  for (off_t at = 0;;) {
    const ssize_t count = ::pread(file.Descriptor(), part.data(), part.size(), at);
    if (count < 0) RefuseSystemError();
    if (count == 0) return;
    for (ssize_t sent = 0; sent < count;) {
      const ssize_t more = ::write(STDOUT_FILENO, part.data() + sent, static_cast<std::size_t>(count - sent));
      if (more < 0 && errno != EINTR) RefuseSystemError();
      if (more > 0) sent += more;
    }
    at += count;
  }
}

}  // namespace vblur::host
