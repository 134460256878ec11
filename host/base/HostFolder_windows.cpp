#include "host/base/HostFolder.h"

#include <string>

#include <windows.h>

namespace vblur::host {

std::filesystem::path HostFolder() {
  HMODULE library = nullptr;
  constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  GetModuleHandleExW(kFlags, reinterpret_cast<LPCWSTR>(&HostFolder), &library);
  std::wstring file(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(library, file.data(), static_cast<DWORD>(file.size()));
    if (length < file.size()) {
      file.resize(length);
      return std::filesystem::path(file).parent_path();
    }
    file.resize(file.size() * 2);
  }
}

}  // namespace vblur::host
