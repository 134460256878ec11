// Blocks of Exif data, of what is known of a picture.
#pragma once

#include <optional>
#include <string>

#include "host/light/LightMetadata.h"

namespace vblur::host {

// As the full library makes a block, byte by byte, of the attributes that are fields of Exif data. Nothing where it
// would need what is not known here: fields of several numbers, fractions below 0 or too large for one, and the notes
// of a camera.
std::optional<std::string> EncodedExif(const LightAttributes& attributes);

// Whether it writes the attribute, and what is read again has its name.
bool IsEncodedInExif(const PictureAttribute& attribute);

}  // namespace vblur::host
