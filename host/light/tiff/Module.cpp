// What the module for plain TIFF files exports.
#include "host/light/tiff/TiffReading.h"
#include "host/light/tiff/TiffWriting.h"

namespace vblur::host {

namespace {

class TiffPictures final : public LightModule {
 public:
  bool Writes(const PictureToWrite& picture) const override { return IsPlainTiff(picture); }
  std::vector<std::string> Write(const PictureToWrite& picture, const StopTest& stop) override {
    return WriteTiff(picture, stop);
  }

 private:
  OpenedLight OpenFile(const std::filesystem::path& path, const ReadChoice& choice) const override {
    return OpenTiff(path, choice);
  }
};

}  // namespace

}  // namespace vblur::host

extern "C" const char* VBlurModuleVersion() {
  return VBLUR_VERSION;
}

extern "C" vblur::host::LightPictures* VBlurLightPictures() {
  static vblur::host::TiffPictures module;
  return &module;
}
