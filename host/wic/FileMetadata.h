// What is known of a picture file beyond its pixels, passed on to the output.
#pragma once

#include <string>

#include "host/files/PictureFile.h"
#include "host/files/PictureInfo.h"
#include "host/files/PictureReport.h"
#include "host/formats/FileExtras.h"
#include "host/formats/FileHeader.h"

namespace vblur::host {

struct PictureMetadata {
  PictureInfo info;
  FileHeader header;
  FileExtras extras;
  // The file declares premultiplied colours. Values are unchanged, and the output declares the same.
  bool associatedAlpha = false;
};

PictureReport DescribePicture(const PictureMetadata& metadata);

}  // namespace vblur::host
