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

// Of no fields for an empty block. Nothing for one that is damaged, or has anything that the full library reads in a
// way of its own: texts that are not ASCII, values of another type than the field's, fractions by 0, an orientation
// that is none, the notes of a camera that it knows.
std::optional<DecodedExif> DecodeExif(const std::string& block);

// Names the unit of a picture's resolution by the number that the Exif data have, where no other names it and the
// resolution is theirs. False: it stays a number.
bool NameResolutionUnit(const LightAttributes& ofExif, LightAttributes& all);

// What is told of a picture with such a block.
void DescribeExif(const std::string& block, std::vector<ExifFieldName> unread, PictureInfo& info);

}  // namespace vblur::host
