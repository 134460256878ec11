// Copies some bits of words and leaves the others: the vector form of a copy of chosen components.
#pragma once

#include <cstdint>

namespace vblur {

// n words at `in` replace those at `out` in the bits of `chosen`. `in` may be `out`, or lie behind it. No
// memory need be aligned.
void copyBits(const void* in, std::int32_t n, std::uint32_t chosen, void* out);
void copyBits(const void* in, std::int32_t n, std::uint64_t chosen, void* out);

// The same with one word for all.
void fillBits(std::uint32_t word, std::int32_t n, std::uint32_t chosen, void* out);
void fillBits(std::uint64_t word, std::int32_t n, std::uint64_t chosen, void* out);

}  // namespace vblur
