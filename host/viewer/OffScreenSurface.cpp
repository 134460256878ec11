#include "host/viewer/OffScreenSurface.h"

#include <filesystem>
#include <string>
#include <system_error>

#include <dlfcn.h>

#include "host/Failure.h"
#include "host/HostFolder.h"

namespace vblur::host {

namespace {

constexpr const char* kModuleName = "libvblur_gl.so";

// It stays until the process ends: drivers are not made to be unloaded.
MakeOffScreenSurfaceFunction& LoadPaintLibrary() {
  const std::filesystem::path file = HostFolder() / kModuleName;
  const auto refuse = [&file](const std::string& why) {
    throw Failure(ExitCode::CannotRead, file.string() + ": cannot load what paints the viewer: " + why);
  };
  std::error_code error;
  if (!std::filesystem::exists(file, error)) refuse("no such file");
  void* const module = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* const function = module != nullptr ? ::dlsym(module, kMakeOffScreenSurface) : nullptr;
  if (function == nullptr) refuse(::dlerror());
  return *reinterpret_cast<MakeOffScreenSurfaceFunction*>(function);
}

}  // namespace

std::unique_ptr<ViewerSurface> MakeOffScreenSurface(std::int32_t width, std::int32_t height) {
  static MakeOffScreenSurfaceFunction& make = LoadPaintLibrary();
  return std::unique_ptr<ViewerSurface>(make(width, height));
}

}  // namespace vblur::host
