#include "host/viewer/OffScreenSurface.h"

#include "host/base/HostFolder.h"
#include "host/base/LibraryResources.h"
#include "host/base/LoadModule.h"

namespace vblur::host {

namespace {

constexpr const char* kModuleName = "libvblur_host_gl.so";

// Never unloaded: OpenGL drivers do not support it.
MakeOffScreenSurfaceFunction& LoadPaintLibrary() {
  RequireResourcesToLoad("what paints the viewer");
  const LoadedModule module(HostFolder() / kModuleName, "what paints the viewer");
  module.RequireOurVersion();
  return module.Get<MakeOffScreenSurfaceFunction>(kMakeOffScreenSurface);
}

}  // namespace

std::unique_ptr<ViewerSurface> MakeOffScreenSurface(std::int32_t width, std::int32_t height) {
  static MakeOffScreenSurfaceFunction& make = LoadPaintLibrary();
  return std::unique_ptr<ViewerSurface>(make(width, height));
}

}  // namespace vblur::host
