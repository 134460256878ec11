// Metadata of a picture file, passed on to the output.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "host/files/PictureInfo.h"

namespace vblur::host {

struct PictureMetadata {
  // What the reader saw: the whole description as the file was opened, and what the host makes of it.
  OIIO::ImageSpec input;
  PictureInfo info;
  // The samples of the channels that the effect does not take (PictureInfo::passing), as they are stored: those of a
  // pixel side by side in their order, the data window alone, the top row first.
  std::vector<std::byte> passing;
  // Only what an output may repeat: never how the pixels were stored.
  OIIO::ParamValueList attributes;
  // The file declares premultiplied colours. Values are unchanged, and the output declares the same.
  bool associatedAlpha = false;
  // The compression of an OpenEXR file if it is lossless, else empty.
  std::string losslessExr;
  // The data and the display window; they differ in pictures with an overscan or a part rendered.
  OIIO::ROI data;
  OIIO::ROI display;
};

PictureMetadata CollectMetadata(const OIIO::ImageSpec& input, const PictureInfo& info);
// Adds it to the description of an output of the same or another size and format.
void ApplyMetadata(const PictureMetadata& metadata, const OIIO::ImageOutput& writer, OIIO::ImageSpec& output);

}  // namespace vblur::host
