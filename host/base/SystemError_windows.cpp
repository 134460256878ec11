#include "host/base/SystemError_windows.h"

#include <array>
#include <system_error>

#include "host/base/Utf8.h"

#include <windows.h>

namespace vblur::host {

namespace {

// 0 for an error that other systems do not have.
int GenericNumber(DWORD error) {
  if (IsEndOfPipe(error)) return EPIPE;
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME: return ENOENT;
    case ERROR_ACCESS_DENIED: return EACCES;
    case ERROR_TOO_MANY_OPEN_FILES: return EMFILE;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY: return ENOMEM;
    case ERROR_WRITE_PROTECT: return EROFS;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL: return ENOSPC;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS: return EEXIST;
    case ERROR_INVALID_HANDLE: return EBADF;
    case ERROR_FILENAME_EXCED_RANGE: return ENAMETOOLONG;
    case ERROR_BAD_EXE_FORMAT: return ENOEXEC;
    default: return 0;
  }
}

std::string WordsOfWindows(DWORD error) {
  std::array<wchar_t, 512> text{};
  constexpr DWORD kFlags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
  const DWORD length = FormatMessageW(kFlags, nullptr, error, 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
  std::string words = Utf8Of(std::u16string_view(reinterpret_cast<const char16_t*>(text.data()), length));
  while (!words.empty() && (words.back() == ' ' || words.back() == '.'))
    words.pop_back();
  return words.empty() ? "error " + std::to_string(error) : words;
}

}  // namespace

std::string SystemErrorText(unsigned long error) {
  if (error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION) return "another program has it open";
  const int number = GenericNumber(error);
  return number != 0 ? std::generic_category().message(number) : WordsOfWindows(error);
}

bool IsEndOfPipe(unsigned long error) {
  return error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA || error == ERROR_PIPE_NOT_CONNECTED;
}

std::string LastErrorText() {
  return SystemErrorText(GetLastError());
}

}  // namespace vblur::host
