// How many rows of an OpenEXR file are packed together, and how many are best given to its library at once.
#pragma once

#include <cstddef>
#include <cstdint>

#include <ImfCompression.h>

namespace vblur::host {

std::int32_t RowsPackedTogether(Imf::Compression compression);

struct ExrRows {
  Imf::Compression compression = Imf::NO_COMPRESSION;
  std::size_t bytes = 0;  // of a row
  std::int32_t count = 0;
  std::int32_t tileHeight = 0;  // of a file of tiles
};

// Of threads that may pack or unpack them, those that are worth starting; 1: none is.
std::int32_t ThreadsFor(const ExrRows& rows, std::int32_t threads);
// A multiple of what is packed together: some megabytes, and work for all threads where that is not too much memory.
// At most all rows.
std::int32_t RowsAtOnce(const ExrRows& rows, std::int32_t threads);

}  // namespace vblur::host
