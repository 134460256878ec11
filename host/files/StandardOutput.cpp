#include "host/files/StandardOutput.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <span>
#include <system_error>
#include <vector>

#include "host/base/Descriptors.h"
#include "host/base/Failure.h"

namespace vblur::host {

namespace {

const std::filesystem::path kOutput = "-";

[[noreturn]] void RefuseSystemError() {
  RefuseToWrite(kOutput, std::generic_category().message(errno));
}

}  // namespace

void RequirePictureOutput() {
  if (IsTerminal(kStandardOutput)) RefuseToWrite(kOutput, "it is a terminal, a file or a pipe was expected");
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
  for (std::int64_t at = 0;;) {
    const std::int64_t count = ReadSomeAt(file.Descriptor(), at, part);
    if (count < 0) RefuseSystemError();
    if (count == 0) return;
    std::span<const char> left = std::span(part).first(static_cast<std::size_t>(count));
    while (!left.empty()) {
      const std::int64_t sent = WriteSome(kStandardOutput, left);
      if (sent < 0 && errno != EINTR) RefuseSystemError();
      if (sent > 0) left = left.subspan(static_cast<std::size_t>(sent));
    }
    at += count;
  }
}

}  // namespace vblur::host
