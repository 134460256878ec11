// What the module for plain PNG files exports.
#include "host/light/png/PngReading.h"
#include "host/light/png/PngWriting.h"

extern "C" const char* VBlurModuleVersion() {
  return VBLUR_VERSION;
}

extern "C" vblur::host::LightPictures* VBlurLightPictures() {
  using namespace vblur::host;
  static LightModuleOf<OpenPng, IsPlainPng, WritePng> module;
  return &module;
}
