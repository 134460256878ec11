// The Exif data of a PNG file: a chunk of its own.
#pragma once

#include <optional>
#include <string>

#include "host/files/PictureLibrary.h"
#include "host/light/LightMetadata.h"

namespace vblur::host {

struct PngExif {
  std::string chunk;       // empty: none
  LightAttributes others;  // which the chunk does not hold
};

// Of the attributes that a PNG output gets, as the full library has it: the source's own block where it has one, else
// one made of its fields. Nothing where that is not known here.
std::optional<PngExif> TakePngExif(const PictureToWrite& picture, const LightAttributes& attributes);

}  // namespace vblur::host
