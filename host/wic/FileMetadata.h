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

// Whether a JPEG file holds its Exif data, these with its texts among them, or its IPTC data, each in a segment.
bool JpegHoldsExif(const PictureMetadata& metadata);
bool JpegHoldsTexts(const PictureMetadata& metadata);
bool JpegHoldsIptc(const PictureMetadata& metadata);

PictureReport DescribePicture(const PictureMetadata& metadata);

}  // namespace vblur::host
