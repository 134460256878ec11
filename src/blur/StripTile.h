// A tile of neighbouring lines, to be copied into the rows of a strip.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "blur/TransposePixels.h"

namespace vblur {

template <class Pixel>
struct StripTile {
  const Pixel* first;      // the first position of the first line
  std::int64_t lineBytes;  // from one line to the next
  std::int32_t step;       // from one position to the next, in pixels: 1, -1 or 0
  std::int32_t lines;
  std::int32_t count;  // positions

  const Pixel* at(std::int32_t line, std::int32_t position) const {
    return reinterpret_cast<const Pixel*>(reinterpret_cast<const std::byte*>(first) + line * lineBytes) +
           position * step;
  }

  // Position i of line j goes to pixel j of row i; rows lie rowBytes apart.
  void gather(Pixel* row, std::size_t rowBytes) const {
    const auto rowPixels = static_cast<std::int32_t>(rowBytes / sizeof(Pixel));
    // Positions and lines that vector code transposes.
    std::int32_t doneLines = 0;
    std::int32_t done = 0;
    if constexpr (sizeof(Pixel) <= 8) {
      constexpr std::int32_t kSide = transposedSide(sizeof(Pixel));
      doneLines = lines - lines % kSide;
      done = step == 0 ? 0 : count - count % kSide;
    }
    if (doneLines > 0 && done > 0) {
      // Vector code reads forward: for step -1 it writes the strip backward.
      const auto bytes = static_cast<std::int64_t>(rowBytes);
      const bool forward = step > 0;
      transposeIntoStrip(sizeof(Pixel), at(0, forward ? 0 : done - 1), lineBytes, doneLines, done,
                         forward ? row : row + (done - 1) * rowPixels, forward ? bytes : -bytes);
    } else {
      done = 0;
    }
    const std::int32_t distinct = step == 0 ? 1 : count;
    for (std::int32_t i = 0; i < distinct; ++i) {
      for (std::int32_t j = i < done ? doneLines : 0; j < lines; ++j)
        row[i * rowPixels + j] = *at(j, i);
    }
    for (std::int32_t i = distinct; i < count; ++i)
      std::memcpy(row + i * rowPixels, row, static_cast<std::size_t>(lines) * sizeof(Pixel));
  }
};

}  // namespace vblur
