#include "host/base/Descriptors_windows.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <limits>

#include <io.h>

#include "host/base/ConsoleInput_windows.h"
#include "host/base/Descriptors.h"
#include "host/base/SystemError_windows.h"

#include <windows.h>

namespace vblur::host {

namespace {

std::atomic<void (*)()> whenPipesBreak = nullptr;

HANDLE HandleOf(int file) {
  return reinterpret_cast<HANDLE>(_get_osfhandle(file));
}

DWORD CountOf(std::size_t bytes) {
  return static_cast<DWORD>(std::min<std::size_t>(bytes, std::numeric_limits<std::int32_t>::max()));
}

std::int64_t Fail(DWORD error) {
  if (IsEndOfPipe(error)) {
    errno = EPIPE;
    return -1;
  }
  switch (error) {
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL: errno = ENOSPC; break;
    // The file is closed, or open for the other direction alone.
    case ERROR_INVALID_HANDLE:
    case ERROR_ACCESS_DENIED: errno = EBADF; break;
    case ERROR_OPERATION_ABORTED: errno = EINTR; break;
    default: errno = EIO;
  }
  return -1;
}

std::int64_t Read(int file, std::span<char> bytes, OVERLAPPED* place) {
  DWORD count = 0;
  if (ReadFile(HandleOf(file), bytes.data(), CountOf(bytes.size()), &count, place) != 0) return count;
  const DWORD error = GetLastError();
  // The writer has closed its end of the pipe.
  return error == ERROR_HANDLE_EOF || IsEndOfPipe(error) ? 0 : Fail(error);
}

void TellOfBrokenPipe() {
  const int error = errno;
  if (void (*const call)() = whenPipesBreak; error == EPIPE && call != nullptr) call();
  errno = error;
}

}  // namespace

void WhenPipesBreak(void (*call)()) {
  whenPipesBreak = call;
}

bool IsTerminal(int file) {
  DWORD mode = 0;
  return GetConsoleMode(HandleOf(file), &mode) != 0;
}

bool IsReady(int file) {
  const HANDLE input = HandleOf(file);
  if (GetFileType(input) != FILE_TYPE_PIPE) return true;
  DWORD available = 0;
  // An error is for the read to report.
  if (PeekNamedPipe(input, nullptr, 0, nullptr, &available, nullptr) == 0 || available > 0) return true;
  constexpr DWORD kMilliseconds = 10;
  Sleep(kMilliseconds);
  return false;
}

std::int64_t ReadSome(int file, std::span<char> bytes) {
  if (IsTerminal(file)) {
    const std::int64_t count = ReadTypedText(HandleOf(file), bytes);
    return count >= 0 ? count : Fail(GetLastError());
  }
  return Read(file, bytes, nullptr);
}

std::int64_t WriteSome(int file, std::span<const char> bytes) {
  DWORD count = 0;
  if (WriteFile(HandleOf(file), bytes.data(), CountOf(bytes.size()), &count, nullptr) != 0) return count;
  const std::int64_t failed = Fail(GetLastError());
  TellOfBrokenPipe();
  return failed;
}

bool Flush(std::FILE* stream) {
  if (std::fflush(stream) == 0 && std::ferror(stream) == 0) return true;
  // That of a stream without a buffer is an earlier one.
  if (_doserrno != 0) {
    Fail(_doserrno);
  } else {
    // The library has refused it: there is no file.
    errno = EBADF;
  }
  TellOfBrokenPipe();
  return false;
}

std::int64_t ReadSomeAt(int file, std::int64_t place, std::span<char> bytes) {
  OVERLAPPED at{};
  at.Offset = static_cast<DWORD>(place & 0xFFFFFFFF);
  at.OffsetHigh = static_cast<DWORD>(place >> 32);
  return Read(file, bytes, &at);
}

}  // namespace vblur::host
