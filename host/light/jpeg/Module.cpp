// What the module for plain JPEG files exports.
#include "host/light/jpeg/JpegReading.h"
#include "host/light/jpeg/JpegWriting.h"

namespace vblur::host {

namespace {

class JpegPictures final : public LightModule {
 public:
  bool Writes(const PictureToWrite& picture) const override { return IsPlainJpeg(picture); }
  std::vector<std::string> Write(const PictureToWrite& picture, const StopTest& stop) override {
    return WriteJpeg(picture, stop);
  }

 private:
  OpenedLight OpenFile(const std::filesystem::path& path, const ReadChoice& choice) const override {
    return OpenJpeg(path, choice);
  }
};

}  // namespace

}  // namespace vblur::host

extern "C" const char* VBlurModuleVersion() {
  return VBLUR_VERSION;
}

extern "C" vblur::host::LightPictures* VBlurLightPictures() {
  static vblur::host::JpegPictures module;
  return &module;
}
