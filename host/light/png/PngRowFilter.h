// The row filters of PNG files: each makes a row smaller to pack by what its neighbours say of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vblur::host {

// Chooses for each row, as libpng does: the filter whose bytes, as signed numbers, have the least sum of magnitudes;
// the first of them in the order none, sub, up, average, Paeth.
class PngRowFilter {
 public:
  // Bytes of a row and of a pixel in it, at least 1 each.
  PngRowFilter(std::size_t rowBytes, std::size_t pixelBytes);

  // `row` and the one above it, each behind the zeros of a pixel; above the first row of a picture is one of zeros.
  // Returns the number of the filter and the filtered bytes, 1 + rowBytes, valid until the next call.
  const std::uint8_t* Filter(const std::uint8_t* row, const std::uint8_t* above);

 private:
  std::size_t rowBytes_;
  std::size_t pixelBytes_;
  // The best so far, and the one that is tried.
  std::vector<std::uint8_t> best_;
  std::vector<std::uint8_t> tried_;
};

}  // namespace vblur::host
