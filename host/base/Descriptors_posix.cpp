#include "host/base/Descriptors.h"

#include <poll.h>
#include <unistd.h>

namespace vblur::host {

bool IsTerminal(int file) {
  return ::isatty(file) != 0;
}

bool IsReady(int file) {
  constexpr int kMilliseconds = 100;
  pollfd input{file, POLLIN, 0};
  return ::poll(&input, 1, kMilliseconds) != 0;
}

std::int64_t ReadSome(int file, std::span<char> bytes) {
  return ::read(file, bytes.data(), bytes.size());
}

std::int64_t WriteSome(int file, std::span<const char> bytes) {
  return ::write(file, bytes.data(), bytes.size());
}

bool Flush(std::FILE* stream) {
  return std::fflush(stream) == 0 && std::ferror(stream) == 0;
}

std::int64_t ReadSomeAt(int file, std::int64_t place, std::span<char> bytes) {
  return ::pread(file, bytes.data(), bytes.size(), place);
}

}  // namespace vblur::host
