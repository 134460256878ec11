// What the module for plain DPX files exports.
#include "host/light/dpx/DpxReading.h"
#include "host/light/dpx/DpxWriting.h"

extern "C" const char* VBlurModuleVersion() {
  return VBLUR_VERSION;
}

extern "C" vblur::host::LightPictures* VBlurLightPictures() {
  using namespace vblur::host;
  static LightModuleOf<OpenDpx, IsPlainDpx, WriteDpx> module;
  return &module;
}
