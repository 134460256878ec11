// Vector code that copies, mirrors and fills rows of words, whole or in some of their bits. A pixel is a word, so that
// a choice of components is a bit mask.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "image/HvCpu.h"

namespace vblur {

// Copies the bits of `chosen` of n words. `in` may equal `out` or come after it in memory. Any alignment.
void copyBits(const void* in, std::int32_t n, std::uint32_t chosen, void* out);
void copyBits(const void* in, std::int32_t n, std::uint64_t chosen, void* out);

// The same in reverse: reads the word at `in`, then the one before it in memory, and so on. The rows must not overlap.
void mirrorBits(const void* in, std::int32_t n, std::uint32_t chosen, void* out);
void mirrorBits(const void* in, std::int32_t n, std::uint64_t chosen, void* out);

// The same with one word repeated.
void fillBits(std::uint32_t word, std::int32_t n, std::uint32_t chosen, void* out);
void fillBits(std::uint64_t word, std::int32_t n, std::uint64_t chosen, void* out);

// Word sizes that mirrorWords and fillWords take.
constexpr bool isWordOfRows(std::size_t bytes) {
  return bytes == 4 || bytes == 8 || bytes == 16;
}

// Whole words of wordBytes each.
void mirrorWords(std::size_t wordBytes, const void* in, std::int32_t n, void* out);
void fillWords(std::size_t wordBytes, const void* word, std::int32_t n, void* out);

// The C library's memset uses the machine's widest vectors, and from some KiB on writes cache lines without reading
// them first; Highway offers that only for stores that bypass the caches.
inline void clearBytes(void* memory, std::size_t bytes) {
  if (HvUsesVectors()) {
    std::memset(memory, 0, bytes);
  } else {
    for (std::size_t i = 0; i < bytes; ++i)
      static_cast<std::byte*>(memory)[i] = std::byte{0};
  }
}

}  // namespace vblur
