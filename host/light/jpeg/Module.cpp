// What the module for plain JPEG files exports.
#include "host/light/jpeg/JpegReading.h"
#include "host/light/jpeg/JpegWriting.h"

extern "C" const char* VBlurModuleVersion() {
  return VBLUR_VERSION;
}

extern "C" vblur::host::LightPictures* VBlurLightPictures() {
  using namespace vblur::host;
  static LightModuleOf<OpenJpeg, IsPlainJpeg, WriteJpeg> module;
  return &module;
}
