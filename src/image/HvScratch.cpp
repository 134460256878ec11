#include "image/HvScratch.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <vector>

#include "image/HvMemory.h"

namespace vblur {
namespace {

// What is kept while nothing renders.
constexpr std::size_t kMostBytes = std::size_t{256} << 20;
constexpr std::size_t kMostBlocks = 16;
// Strips of pixels that begin with a cache line touch no more of them than they fill.
constexpr std::size_t kCacheLine = 64;

class Shelf {
 public:
  Shelf() { blocks_.reserve(kMostBlocks); }
  ~Shelf() {
    for (const HvScratchBlock& block : blocks_)
      release(block);
  }

  static void release(const HvScratchBlock& block) { ::operator delete (block.memory, std::align_val_t{kCacheLine}); }

  HvScratchBlock take(std::size_t bytes) {
    const std::lock_guard hold(lock_);
    // The smallest that serves, unless most of it would lie idle.
    auto best = blocks_.end();
    for (auto block = blocks_.begin(); block != blocks_.end(); ++block) {
      const bool serves = block->bytes >= bytes && block->bytes / 2 <= bytes;
      if (serves && (best == blocks_.end() || block->bytes < best->bytes)) best = block;
    }
    if (best == blocks_.end()) return {};
    const HvScratchBlock found = *best;
    kept_ -= found.bytes;
    *best = blocks_.back();
    blocks_.pop_back();
    return found;
  }

  bool keep(const HvScratchBlock& block) {
    const std::lock_guard hold(lock_);
    if (blocks_.size() == kMostBlocks || block.bytes > kMostBytes - kept_) return false;
    blocks_.push_back(block);
    kept_ += block.bytes;
    return true;
  }

 private:
  std::mutex lock_;
  std::vector<HvScratchBlock> blocks_;
  std::size_t kept_ = 0;
};

Shelf& shelf() {
  static Shelf instance;
  return instance;
}

}  // namespace

HvScratchBlock takeScratch(std::size_t bytes) {
  HvScratchBlock block = shelf().take(bytes);
  if (block.memory == nullptr) {
    block.memory = static_cast<std::byte*>(
        ::operator new (std::max<std::size_t>(bytes, 1), std::align_val_t{kCacheLine}, std::nothrow));
    block.bytes = block.memory == nullptr ? 0 : bytes;
  }
  HvNoteTaken(block.bytes);
  return block;
}

void giveScratch(const HvScratchBlock& block) {
  HvNoteGiven(block.bytes);
  if (block.memory != nullptr && !shelf().keep(block)) Shelf::release(block);
}

}  // namespace vblur
