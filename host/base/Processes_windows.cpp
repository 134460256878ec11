#include "host/base/Processes.h"

#include <array>

#include "host/base/Utf8.h"

#include <windows.h>

namespace vblur::host {

std::string MachineName() {
  std::array<wchar_t, 256> text{};
  auto length = static_cast<DWORD>(text.size());
  if (GetComputerNameExW(ComputerNamePhysicalDnsHostname, text.data(), &length) == 0) return {};
  return Utf8Of(std::u16string_view(reinterpret_cast<const char16_t*>(text.data()), length));
}

std::uint32_t OwnProcess() {
  return GetCurrentProcessId();
}

bool HasEnded(std::uint32_t process) {
  const HANDLE handle = OpenProcess(SYNCHRONIZE, FALSE, process);
  if (handle == nullptr) return GetLastError() == ERROR_INVALID_PARAMETER;
  // It keeps its number while somebody asks for its result.
  const bool ended = WaitForSingleObject(handle, 0) == WAIT_OBJECT_0;
  CloseHandle(handle);
  return ended;
}

}  // namespace vblur::host
