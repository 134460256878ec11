#include "apps/vblur/SystemStreams.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <io.h>

#include "host/base/SystemError_windows.h"

#include <windows.h>

namespace vblur::cli {

namespace {

struct ConsoleOutput {
  int stream;
  std::atomic<bool> isChanged = false;
  DWORD mode = 0;  // before
};

ConsoleOutput outputs[] = {{1}, {2}};
std::atomic<UINT> codePage = 0;  // before; 0 while it is not changed

HANDLE HandleOf(int stream) {
  return reinterpret_cast<HANDLE>(_get_osfhandle(stream));
}

bool IsOpen(int stream) {
  const HANDLE handle = HandleOf(stream);
  // A program without a console has a value of its own for streams that lead nowhere.
  const HANDLE none = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-2));
  return handle != INVALID_HANDLE_VALUE && handle != none && handle != nullptr;
}

void OpenOnNothing(int stream) {
  const int taken = _open("NUL", (stream == 0 ? _O_WRONLY : _O_RDONLY) | _O_NOINHERIT);
  if (taken < 0 || taken == stream) return;
  _dup2(taken, stream);
  _close(taken);
}

// The last of the handlers: the system ends the process after it.
BOOL CALLBACK LeaveConsole(DWORD /*event*/) {
  RestoreConsole();
  return FALSE;
}

void PrepareConsole() {
  bool isShown = false;
  for (ConsoleOutput& output : outputs) {
    if (GetConsoleMode(HandleOf(output.stream), &output.mode) == 0) continue;
    isShown = true;
    const DWORD wanted = output.mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING;
    output.isChanged = SetConsoleMode(HandleOf(output.stream), wanted) != 0;
  }
  if (!isShown) return;
  SetConsoleCtrlHandler(LeaveConsole, TRUE);
  const UINT before = GetConsoleOutputCP();
  if (SetConsoleOutputCP(CP_UTF8) != 0) codePage = before;
}

}  // namespace

void PrepareStreams() {
  for (const int stream : {0, 1, 2}) {
    if (!IsOpen(stream)) OpenOnNothing(stream);
    _setmode(stream, _O_BINARY);
  }
  PrepareConsole();
}

void RestoreConsole() noexcept {
  for (ConsoleOutput& output : outputs) {
    if (output.isChanged.exchange(false)) SetConsoleMode(HandleOf(output.stream), output.mode);
  }
  if (const UINT before = codePage.exchange(0); before != 0) SetConsoleOutputCP(before);
}

// The library's own ways to end have the system call each loaded library, which may wait for a lock that a thread held
// when it was stopped.
void EndProcess(int status) noexcept {
  RestoreConsole();
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
  std::abort();
}

std::FILE* OwnErrorStream() {
  const int own = _dup(2);
  if (own >= 0) SetHandleInformation(HandleOf(own), HANDLE_FLAG_INHERIT, 0);
  std::FILE* stream = own >= 0 ? _fdopen(own, "wb") : nullptr;
  return stream != nullptr ? stream : stderr;
}

int NumberOf(std::FILE* stream) {
  return _fileno(stream);
}

bool IsPipeBroken() {
  return errno == EPIPE || host::IsEndOfPipe(_doserrno);
}

}  // namespace vblur::cli
