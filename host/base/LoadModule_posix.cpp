#include "host/base/LoadModule.h"

#include <dlfcn.h>

namespace vblur::host {

void* LoadedModule::Open(const std::filesystem::path& file) {
  // Lazy binding: most functions that a module's dependencies import are never called.
  return ::dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL);
}

void LoadedModule::Close(void* library) {
  ::dlclose(library);
}

std::string LoadedModule::LastError() {
  return ::dlerror();
}

void* LoadedModule::FindSymbol(const char* name) const {
  return ::dlsym(library_, name);
}

}  // namespace vblur::host
