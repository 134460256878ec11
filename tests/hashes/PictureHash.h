// A number that stands for the bits of a picture, the same on every machine that has the same bits.
#pragma once

#include <cstdint>
#include <string>

#include "tests/differential/DrawnFrame.h"

namespace vblur::hashes {

// FNV-1a of 64 bits over the components as bytes: rows from the top down, pixels from the left, a component of 16 bits
// as its low byte and then its high one. Floats are the four bytes of their
// bits, the low one first. `depth` is 8, 16 or 32.
std::uint64_t HashPicture(const differential::DrawnPicture& picture, std::int32_t depth);

// One line of a list of hashes: "NAME 48x32 R8 0123456789abcdef", the size in pixels and the format of a pixel.
std::string HashLine(const std::string& name, const differential::DrawnPicture& picture, std::int32_t depth);

}  // namespace vblur::hashes
