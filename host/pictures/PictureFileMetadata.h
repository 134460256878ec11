// Metadata of a picture file, passed on to the output.
#pragma once

#include <string>

#include <OpenImageIO/imageio.h>

namespace vblur::host {

struct PictureMetadata {
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

PictureMetadata CollectMetadata(const OIIO::ImageSpec& input, const std::string& format);
// Adds it to the description of an output of the same or another size and format.
void ApplyMetadata(const PictureMetadata& metadata, const OIIO::ImageOutput& writer, OIIO::ImageSpec& output);

}  // namespace vblur::host
