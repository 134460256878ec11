// Names of the fields of Exif data.
#pragma once

#include <cstdint>
#include <string_view>

namespace vblur::host {

// The directories of a block of Exif data, whose numbers are their own.
enum class ExifPart : std::uint8_t { Picture, Camera, Place };

// As OpenImageIO calls it, such as "FNumber" or "GPS:Latitude"; empty for fields that are not known, and for those that
// it does not give: comments and notes in forms of their own.
std::string_view NameOfExifTag(ExifPart part, std::uint16_t tag);

}  // namespace vblur::host
