// What a block of Exif data says, as the full library reads it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/light/LightMetadata.h"

namespace vblur::host {

struct DecodedExif {
  LightAttributes attributes;
  // Fields that are not given, but for a camera's own notes and those of how pixels were stored.
  std::vector<ExifFieldName> unread;
};

// Nothing for a block that is damaged, or has anything that the full library reads in a way of its own: texts that are
// not ASCII, fractions by 0, an orientation that is none, the notes of a camera that it knows.
std::optional<DecodedExif> DecodeExif(const std::string& block);

}  // namespace vblur::host
