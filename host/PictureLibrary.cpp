#include "host/PictureLibrary.h"

#include <string>
#include <system_error>

#include <dlfcn.h>

#include "host/Failure.h"
#include "host/HostFolder.h"

namespace vblur::host {

namespace {

constexpr const char* kModuleName = "libvblur_pictures.so";

// It stays until the process ends: the libraries that it brings are not made to be unloaded.
PictureLibrary& LoadPictureLibrary() {
  const std::filesystem::path file = HostFolder() / kModuleName;
  const auto refuse = [&file](const std::string& why) {
    throw Failure(ExitCode::CannotRead, file.string() + ": cannot load the picture library: " + why);
  };
  std::error_code error;
  if (!std::filesystem::exists(file, error)) refuse("no such file");
  // Lazily: most functions of those libraries are never called. The module's own are looked up at once.
  void* const module = ::dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL);
  void* const function = module != nullptr ? ::dlsym(module, kPictureLibraryFunction) : nullptr;
  if (function == nullptr) refuse(::dlerror());
  return *reinterpret_cast<PictureLibraryFunction*>(function)();
}

}  // namespace

PictureLibrary& ThePictureLibrary() {
  static PictureLibrary& library = LoadPictureLibrary();
  return library;
}

}  // namespace vblur::host
