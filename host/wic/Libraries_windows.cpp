// The picture and the drawing library of Windows.
#include "host/drawing/PaintedDrawings.h"
#include "host/files/PictureLibrary.h"
#include "host/wic/GdiTextPainter.h"
#include "host/wic/PictureReading.h"
#include "host/wic/PictureWriting.h"
#include "host/wic/TriangleFilter.h"

namespace vblur::host {

namespace {

class SystemPictures final : public PictureLibrary {
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
  void Scale(const HostImage& from, HostImage& to) override { ScaleByTriangles(from, to); }
};

}  // namespace

PictureLibrary& ThePictureLibrary() {
  static SystemPictures library;
  return library;
}

// The system's own is light.
void UsePictures(PictureLibraries /*libraries*/) {}

DrawingLibrary& TheDrawingLibrary() {
  static PaintedDrawings<GdiTextPainter> library;
  return library;
}

}  // namespace vblur::host
