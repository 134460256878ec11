#include "host/base/LoadModule.h"

#include <system_error>
#include <utility>

#include <dlfcn.h>

#include "host/base/Failure.h"

namespace vblur::host {

LoadedModule::LoadedModule(const std::filesystem::path& file, const std::string& what) : file_(file), what_(what) {
  std::error_code error;
  if (!std::filesystem::exists(file, error)) Refuse("no such file");
  // Lazy binding: most functions that a module's dependencies import are never called.
  library_ = ::dlopen(std::filesystem::absolute(file).c_str(), RTLD_LAZY | RTLD_LOCAL);
  if (library_ == nullptr) Refuse(::dlerror());
}

void* LoadedModule::FindSymbol(const char* name) const {
  return ::dlsym(library_, name);
}

void* LoadedModule::GetSymbol(const char* name) const {
  void* const symbol = FindSymbol(name);
  if (symbol == nullptr) Refuse(::dlerror());
  return symbol;
}

void LoadedModule::RequireOurVersion() const {
  const char* (*const version)() = Find<const char*()>("VBlurModuleVersion");
  const std::string found = version == nullptr ? "none" : version();
  if (found != VBLUR_VERSION) Refuse("its version is " + found + ", expected " VBLUR_VERSION);
}

void LoadedModule::Unload() {
  if (void* const library = std::exchange(library_, nullptr); library != nullptr) ::dlclose(library);
}

void LoadedModule::Refuse(const std::string& why) const {
  host::Refuse(ExitCode::CannotRead, file_.string(), "cannot load " + what_ + ": " + why);
}

}  // namespace vblur::host
