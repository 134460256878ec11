#include "host/viewer/OffScreenSurface.h"

#include <filesystem>
#include <string>

#include <dlfcn.h>

#include "host/Failure.h"
#include "host/viewersdk/FontSource.h"

namespace vblur::host {

namespace {

// Beside the library of the viewer's tools.
std::filesystem::path PaintLibraryFile() {
  Dl_info place{};
  ::dladdr(reinterpret_cast<const void*>(&UseFontSource), &place);
  return std::filesystem::path(place.dli_fname == nullptr ? "" : place.dli_fname).parent_path() / "libvblur_gl.so";
}

MakeOffScreenSurfaceFunction& LoadPaintLibrary() {
  // Stays loaded: drivers do not like to go.
  void* const library = ::dlopen(PaintLibraryFile().c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    throw Failure(ExitCode::SomeFramesFailed, "cannot load what paints the viewer: " + std::string(::dlerror()));
  }
  auto* const make = reinterpret_cast<MakeOffScreenSurfaceFunction*>(::dlsym(library, kMakeOffScreenSurface));
  if (make == nullptr) {
    throw Failure(ExitCode::SomeFramesFailed, PaintLibraryFile().string() + ": expected the viewer's paint library");
  }
  return *make;
}

}  // namespace

std::unique_ptr<ViewerSurface> MakeOffScreenSurface(std::int32_t width, std::int32_t height) {
  static MakeOffScreenSurfaceFunction& make = LoadPaintLibrary();
  return std::unique_ptr<ViewerSurface>(make(width, height));
}

}  // namespace vblur::host
