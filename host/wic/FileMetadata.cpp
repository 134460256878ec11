#include "host/wic/FileMetadata.h"

namespace vblur::host {

PictureReport DescribePicture(const PictureMetadata& metadata) {
  PictureReport report;
  report.info = metadata.info;
  report.compression = metadata.header.compression;
  report.associatedAlpha = metadata.associatedAlpha;
  return report;
}

}  // namespace vblur::host
