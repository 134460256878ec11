// Picture memory that is reused from frame to frame, which saves the system mapping and clearing new pages.
#pragma once

#include <cstddef>

namespace vblur {

// Blocks of this size and more lie in large pages where the system has them: as a rule, as many as fit whole.
inline constexpr std::size_t kScratchPage = std::size_t{2} << 20;

struct HvScratchBlock {
  std::byte* memory = nullptr;
  std::size_t bytes = 0;
};

// At least `bytes` bytes, uninitialised and aligned to a cache line; null if there is no memory. Thread-safe.
HvScratchBlock takeScratch(std::size_t bytes);
// Keeps the block for reuse, or frees it if it is too large to keep.
void giveScratch(const HvScratchBlock& block);

}  // namespace vblur
