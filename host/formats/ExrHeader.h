// The header of an EXR file, before its library reads it: that trusts the lengths in it, and takes memory for them.
#pragma once

#include <cstdint>
#include <istream>

namespace vblur::host {

// Whether each attribute of the file's first header has the length of its type, and ends within a file of `length`
// bytes, and its tiles have at most 2^20 pixels or four times those of the picture.
bool IsSoundExrHeader(std::istream& file, std::int64_t length);

}  // namespace vblur::host
