// The functions that this module exports.
#include "host/files/LightPictures.h"
#include "host/light/PngReading.h"
#include "host/light/PngWriting.h"

namespace vblur::host {

namespace {

class PngPictures final : public LightPictures {
 public:
  std::unique_ptr<PictureSource> Open(const std::filesystem::path& path, const ReadChoice& choice) override {
    return OpenPng(path, choice);
  }
  std::optional<PictureReport> Report(const std::filesystem::path& path, const ReadChoice& choice) override {
    return ReportPng(path, choice);
  }
  bool Writes(const PictureToWrite& picture) const override { return IsPlainPng(picture); }
  std::vector<std::string> Write(const PictureToWrite& picture, const StopTest& stop) override {
    return WritePng(picture, stop);
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
