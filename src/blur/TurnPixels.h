// Turns tiles of pixels by their diagonal, between rows of a picture and rows of a strip: what was along x
// lies across the lines.
#pragma once

#include <cstdint>

namespace vblur {

// Pixels of 32 and of 64 bits, taken as they are.
//
// Position i of line j goes to strip[i * stripLines + j], for `count` positions of `lines` lines; both are
// multiples of 4. Lines lie lineBytes apart.
void turnIntoStrip(const std::uint32_t* line, std::int64_t lineBytes, std::int32_t lines, std::int32_t count,
                   std::uint32_t* strip, std::int32_t stripLines);
void turnIntoStrip(const std::uint64_t* line, std::int64_t lineBytes, std::int32_t lines, std::int32_t count,
                   std::uint64_t* strip, std::int32_t stripLines);

// The way back.
void turnOutOfStrip(const std::uint32_t* strip, std::int32_t stripLines, std::int32_t lines, std::int32_t count,
                    std::uint32_t* line, std::int64_t lineBytes);
void turnOutOfStrip(const std::uint64_t* strip, std::int32_t stripLines, std::int32_t lines, std::int32_t count,
                    std::uint64_t* line, std::int64_t lineBytes);

}  // namespace vblur
