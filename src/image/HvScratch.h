// Memory that the pictures of one frame leave for those of the next, so that a machine need not find and
// clear it anew for each.
#pragma once

#include <cstddef>

namespace vblur {

struct HvScratchBlock {
  std::byte* memory = nullptr;
  std::size_t bytes = 0;
};

// At least so many bytes from the beginning of a cache line on, of whatever contents; null where there are none. From
// any thread.
HvScratchBlock takeScratch(std::size_t bytes);
// Keeps the block for a later taker, or lets go of it when enough is kept.
void giveScratch(const HvScratchBlock& block);

}  // namespace vblur
