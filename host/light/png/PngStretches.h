// Packs the rows of a large PNG picture on several threads: stretches of rows are filtered and deflated side by side
// and join to one stream. The stream depends on the pixels alone, not on the number of threads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace vblur::host {

struct PngRows {
  std::int32_t count = 0;
  std::size_t bytes = 0;       // of a row
  std::size_t pixelBytes = 0;  // of a pixel
};

// Whether there are two stretches at least.
bool IsLargePng(const PngRows& rows);

// `make` fills a row, its numbers big-endian, from the first to the last; `put` takes the parts of the stream, one
// behind the other. Both are called by the calling thread alone, and end the work by an exception. `level`: of zlib, 1
// to 9. `threads`: how many pack, with 1 the calling thread; the system may allow fewer. Throws std::bad_alloc.
void PackPngRows(const PngRows& rows, int level, std::int32_t threads,
                 const std::function<void(std::int32_t row, std::byte* samples)>& make,
                 const std::function<void(const std::string& bytes)>& put);

}  // namespace vblur::host
