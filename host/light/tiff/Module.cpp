// What the module for plain TIFF files exports.
#include "host/light/tiff/TiffReading.h"
#include "host/light/tiff/TiffWriting.h"

extern "C" const char* VBlurModuleVersion() {
  return VBLUR_VERSION;
}

extern "C" vblur::host::LightPictures* VBlurLightPictures() {
  using namespace vblur::host;
  static LightModuleOf<OpenTiff, IsPlainTiff, WriteTiff> module;
  return &module;
}
