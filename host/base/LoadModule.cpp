#include "host/base/LoadModule.h"

#include <system_error>
#include <utility>

#include "host/base/Failure.h"
#include "host/base/Utf8.h"

namespace vblur::host {

LoadedModule::LoadedModule(const std::filesystem::path& file, const std::string& what) : file_(file), what_(what) {
  std::error_code error;
  if (!std::filesystem::exists(file, error)) Refuse("no such file");
  library_ = Open(std::filesystem::absolute(file));
  if (library_ == nullptr) Refuse(LastError());
}

void* LoadedModule::GetSymbol(const char* name) const {
  void* const symbol = FindSymbol(name);
  if (symbol == nullptr) Refuse(LastError());
  return symbol;
}

void LoadedModule::RequireOurVersion() const {
  const char* (*const version)() = Find<const char*()>("VBlurModuleVersion");
  const std::string found = version == nullptr ? "none" : version();
  if (found != VBLUR_VERSION) Refuse("its version is " + found + ", expected " VBLUR_VERSION);
}

void LoadedModule::Unload() {
  if (void* const library = std::exchange(library_, nullptr); library != nullptr) Close(library);
}

void LoadedModule::Refuse(const std::string& why) const {
  host::Refuse(ExitCode::CannotRead, Utf8Of(file_), "cannot load " + what_ + ": " + why);
}

}  // namespace vblur::host
