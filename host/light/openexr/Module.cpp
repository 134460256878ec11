// What the module for plain OpenEXR files exports.
#include "host/light/openexr/ExrReading.h"
#include "host/light/openexr/ExrWriting.h"

extern "C" const char* VBlurModuleVersion() {
  return VBLUR_VERSION;
}

extern "C" vblur::host::LightPictures* VBlurLightPictures() {
  using namespace vblur::host;
  static LightModuleOf<OpenExr, IsPlainExr, WriteExr> module;
  return &module;
}
