// The functions that this module exports.
#include <OpenImageIO/imagebufalgo.h>

#include "host/drawing/PaintedDrawings.h"
#include "host/files/PictureLibrary.h"
#include "host/pictures/FontFilePainter.h"
#include "host/pictures/PictureReading.h"
#include "host/pictures/PictureReporting.h"
#include "host/pictures/PictureWriting.h"

namespace vblur::host {

namespace {

// The library takes non-const pictures but only reads inputs.
OIIO::ImageBuf View(const HostImage& image) {
  const OIIO::TypeDesc type = image.Depth() == 8    ? OIIO::TypeDesc::UINT8
                              : image.Depth() == 16 ? OIIO::TypeDesc::INT16
                                                    : OIIO::TypeDesc::FLOAT;
  return OIIO::ImageBuf(OIIO::ImageSpec(image.Width(), image.Height(), 4, type), image.FirstPixel());
}

class PictureModule final : public PictureLibrary {
 public:
  std::unique_ptr<PictureSource> Open(const std::filesystem::path& path, const ReadChoice& choice) override {
    return OpenForReading(path, choice);
  }
  std::vector<std::string> Write(const PictureToWrite& picture, const StopTest& stop) override {
    return WritePicture(picture, stop);
  }
  PictureReport Report(const std::filesystem::path& path, const ReadChoice& choice) override {
    return DescribeFile(path, choice);
  }

  void Scale(const HostImage& from, HostImage& to) override {
    OIIO::ImageBuf target = View(to);
    // A filter without negative weights: what it makes has no brighter or darker spots than the picture.
    OIIO::ImageBufAlgo::resize(target, View(from), "triangle");
  }
};

}  // namespace

}  // namespace vblur::host

extern "C" const char* VBlurModuleVersion() {
  return VBLUR_VERSION;
}

extern "C" vblur::host::PictureLibrary* VBlurPictureLibrary() {
  static vblur::host::PictureModule module;
  return &module;
}

extern "C" vblur::host::DrawingLibrary* VBlurDrawingLibrary() {
  static vblur::host::PaintedDrawings<vblur::host::FontFilePainter> module;
  return &module;
}
