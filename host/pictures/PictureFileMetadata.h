// Metadata of a picture file, passed on to the output.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "host/files/OutputFormat.h"
#include "host/files/PictureInfo.h"

namespace vblur::host {

struct PictureMetadata {
  // What the reader saw: the whole description as the file was opened, and what the host makes of it.
  OIIO::ImageSpec input;
  PictureInfo info;
  // The samples of the channels that the effect does not take (PictureInfo::passing), as they are stored: those of a
  // pixel side by side in their order, the data window alone, the top row first.
  std::vector<std::byte> passing;
  // The file declares premultiplied colours. Values are unchanged, and the output declares the same.
  bool associatedAlpha = false;
};

// The kind of an attribute; nothing for what tells how pixels are stored, or nothing new: an upright orientation.
std::optional<MetadataGroup> GroupOf(const OIIO::ParamValue& attribute);

PictureMetadata CollectMetadata(const OIIO::ImageSpec& input, const PictureInfo& info);
// Adds what an output of this layout may repeat: never how the source's pixels were stored. False when it leaves out a
// colour profile that the format would hold.
bool ApplyMetadata(const PictureMetadata& metadata, PixelLayout pixels, OIIO::ImageSpec& output,
                   const OutputFormat& format);

}  // namespace vblur::host
