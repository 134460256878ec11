// What the module for plain OpenEXR files exports.
#include "host/light/openexr/ExrReading.h"
#include "host/light/openexr/ExrWriting.h"

namespace vblur::host {

namespace {

class ExrPictures final : public LightModule {
 public:
  bool Writes(const PictureToWrite& picture) const override { return IsPlainExr(picture); }
  std::vector<std::string> Write(const PictureToWrite& picture, const StopTest& stop) override {
    return WriteExr(picture, stop);
  }

 private:
  OpenedLight OpenFile(const std::filesystem::path& path, const ReadChoice& choice) const override {
    return OpenExr(path, choice);
  }
};

}  // namespace

}  // namespace vblur::host

extern "C" const char* VBlurModuleVersion() {
  return VBLUR_VERSION;
}

extern "C" vblur::host::LightPictures* VBlurLightPictures() {
  static vblur::host::ExrPictures module;
  return &module;
}
