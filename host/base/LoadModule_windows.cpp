#include "host/base/LoadModule.h"

#include "host/base/LongPath.h"
#include "host/base/SystemError_windows.h"

#include <windows.h>

namespace vblur::host {

// What the library needs is looked for beside it, in the program's folder and in the system's: never in the current
// folder or along PATH, where anybody may have put something of the same name.
void* LoadedModule::Open(const std::filesystem::path& file) {
  // Slashes are not understood there.
  std::filesystem::path native = ExtendedPath(file);
  native.make_preferred();
  return LoadLibraryExW(native.c_str(), nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
}

void LoadedModule::Close(void* library) {
  FreeLibrary(static_cast<HMODULE>(library));
}

std::string LoadedModule::LastError() {
  return LastErrorText();
}

void* LoadedModule::FindSymbol(const char* name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library_), name));
}

}  // namespace vblur::host
