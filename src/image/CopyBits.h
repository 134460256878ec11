// Rows of words by vector code: mirrored, filled, or copied in some of their bits. Pixels are words here: a choice
// of components is a choice of bits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "image/HvCpu.h"

namespace vblur {

// n words at `in` replace those at `out` in the bits of `chosen`. `in` may be `out`, or lie behind it. No
// memory need be aligned.
void copyBits(const void* in, std::int32_t n, std::uint32_t chosen, void* out);
void copyBits(const void* in, std::int32_t n, std::uint64_t chosen, void* out);

// The same with the words that end with the one at `in`, which is the first to be written; the one before it in
// memory is the next. They lie apart from those at `out`.
void mirrorBits(const void* in, std::int32_t n, std::uint32_t chosen, void* out);
void mirrorBits(const void* in, std::int32_t n, std::uint64_t chosen, void* out);

// The same with one word for all.
void fillBits(std::uint32_t word, std::int32_t n, std::uint32_t chosen, void* out);
void fillBits(std::uint64_t word, std::int32_t n, std::uint64_t chosen, void* out);

// What whole words may be for the two below.
constexpr bool isWordOfRows(std::size_t bytes) {
  return bytes == 4 || bytes == 8 || bytes == 16;
}

// All bits of words of so many bytes.
void mirrorWords(std::size_t wordBytes, const void* in, std::int32_t n, void* out);
void fillWords(std::size_t wordBytes, const void* word, std::int32_t n, void* out);

// The C library's: its own vectors are as wide as the machine's, and from some KiB on it writes lines of cache
// without reading them first, which code of ours cannot ask for but past the caches.
inline void clearBytes(void* memory, std::size_t bytes) {
  if (HvUsesVectors()) {
    std::memset(memory, 0, bytes);
  } else {
    for (std::size_t i = 0; i < bytes; ++i)
      static_cast<std::byte*>(memory)[i] = std::byte{0};
  }
}

}  // namespace vblur
