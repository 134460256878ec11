// Transposes tiles of pixels, from rows of a picture to rows of a strip.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vblur {

// The lines and positions of a tile are multiples of this.
constexpr std::int32_t transposedSide(std::size_t pixelBytes) {
  return static_cast<std::int32_t>(16 / pixelBytes);
}

// Pixels of 1, 2, 4 or 8 bytes, copied as they are: position i of line j goes to pixel j of strip row i, for `count`
// positions of `lines` lines. Lines lie lineBytes apart, rows of the strip stripBytes; both may be negative.
void transposeIntoStrip(std::size_t pixelBytes, const void* line, std::int64_t lineBytes, std::int32_t lines,
                        std::int32_t count, void* strip, std::int64_t stripBytes);

}  // namespace vblur
