// Entry point and version of the library.
#include "host/gl/EglSurface.h"
#include "host/gl/SystemFonts.h"
#include "host/viewer/OffScreenSurface.h"

namespace vblur::host {

extern "C" __attribute__((visibility("default"))) ViewerSurface* VBlurMakeOffScreenSurface(std::int32_t width,
                                                                                           std::int32_t height) {
  static SystemFonts fonts;
  UseFontSource(&fonts);
  return new EglSurface(width, height);
}

extern "C" const char* VBlurModuleVersion() {
  return VBLUR_VERSION;
}

static_assert(std::is_same_v<decltype(VBlurMakeOffScreenSurface), MakeOffScreenSurfaceFunction>);

}  // namespace vblur::host
