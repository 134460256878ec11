// How the samples of a row lie in a DPX file.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vblur::host {

struct DpxPacking {
  int bits = 8;  // 8, 10, 12 or 16
  // Of 10 bits, three in the upper bits of each word of 32 bits, the first uppermost; of 12 bits, one in the upper bits
  // of each word of 16. Else one after the other, from the lowest bit of a word on.
  bool isFilled = false;
  // The last of three in a word uppermost, as in pictures of one channel.
  bool isReversed = false;
  bool isBigEndian = false;

  // Of a row of so many samples. Samples of 10 and 12 bits take whole words of 32 bits, but for one in each word of 16.
  std::size_t RowBytes(std::size_t samples) const;
  // A row of a file as samples of 8 or 16 bits in the machine's order of bytes: those of 10 and 12 bits are spread over
  // 16 by repeating their upper bits.
  void Unpack(const std::byte* row, std::byte* samples, std::size_t count) const;
  // The reverse, little-endian; of samples of 16 bits the upper ones.
  void Pack(const std::byte* samples, std::byte* row, std::size_t count) const;
};

}  // namespace vblur::host
