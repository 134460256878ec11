// What the module for plain PNG files exports.
#include "host/light/png/PngReading.h"
#include "host/light/png/PngWriting.h"

namespace vblur::host {

namespace {

class PngPictures final : public LightModule {
 public:
  bool Writes(const PictureToWrite& picture) const override { return IsPlainPng(picture); }
  std::vector<std::string> Write(const PictureToWrite& picture, const StopTest& stop) override {
    return WritePng(picture, stop);
  }

 private:
  OpenedLight OpenFile(const std::filesystem::path& path, const ReadChoice& choice) const override {
    return OpenPng(path, choice);
  }
};

}  // namespace

}  // namespace vblur::host

extern "C" const char* VBlurModuleVersion() {
  return VBLUR_VERSION;
}

extern "C" vblur::host::LightPictures* VBlurLightPictures() {
  static vblur::host::PngPictures module;
  return &module;
}
