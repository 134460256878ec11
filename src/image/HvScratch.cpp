#include "image/HvScratch.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <vector>

#if __has_include(<sys/mman.h>)
#include <sys/mman.h>
#endif

#include "image/HvMemory.h"
#include "image/HvMutex.h"

namespace vblur {
namespace {

// The most memory kept for reuse.
constexpr std::size_t kMostBytes = std::size_t{256} << 20;
constexpr std::size_t kMostBlocks = 16;
// The most by which a reused block may exceed the request.
constexpr std::size_t kMostIdleBytes = std::size_t{1} << 20;
// Aligned strips touch no more cache lines than they fill.
constexpr std::size_t kCacheLine = 64;
// Large blocks are aligned to large pages and request them: with small pages, columns of a picture would overflow the
// TLB.
constexpr std::size_t kLargePage = kScratchPage;

constexpr std::align_val_t alignmentOf(std::size_t bytes) {
  return std::align_val_t{bytes >= kLargePage ? kLargePage : kCacheLine};
}

class Shelf {
 public:
  Shelf() { blocks_.reserve(kMostBlocks); }
  ~Shelf() {
    for (const HvScratchBlock& block : blocks_)
      release(block);
  }

  static HvScratchBlock make(std::size_t bytes) {
    auto* memory =
        static_cast<std::byte*>(::operator new(std::max<std::size_t>(bytes, 1), alignmentOf(bytes), std::nothrow));
#ifdef MADV_HUGEPAGE
    // Advice only: a failure does not matter.
    if (memory != nullptr && bytes >= kLargePage) madvise(memory, bytes, MADV_HUGEPAGE);
#endif
    return {memory, memory == nullptr ? 0 : bytes};
  }
  static void release(const HvScratchBlock& block) {
    ::operator delete(block.memory, alignmentOf(block.bytes));
  }

  HvScratchBlock take(std::size_t bytes) {
    const std::lock_guard hold(lock_);
    // Best fit, unless a frame would hold much more than it needs.
    auto best = blocks_.end();
    for (auto block = blocks_.begin(); block != blocks_.end(); ++block) {
      const bool serves = block->bytes >= bytes && block->bytes - bytes <= std::min(bytes / 16, kMostIdleBytes);
      if (serves && (best == blocks_.end() || block->bytes < best->bytes)) best = block;
    }
    if (best == blocks_.end()) return {};
    const HvScratchBlock found = *best;
    kept_ -= found.bytes;
    blocks_.erase(best);
    return found;
  }

  // Frees the oldest blocks to make room.
  bool keep(const HvScratchBlock& block) {
    if (block.bytes > kMostBytes) return false;
    const std::lock_guard hold(lock_);
    while (blocks_.size() == kMostBlocks || block.bytes > kMostBytes - kept_) {
      release(blocks_.front());
      kept_ -= blocks_.front().bytes;
      blocks_.erase(blocks_.begin());
    }
    blocks_.push_back(block);
    kept_ += block.bytes;
    return true;
  }

 private:
  HvMutex lock_;
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
  if (block.memory == nullptr) block = Shelf::make(bytes);
  HvNoteTaken(block.bytes);
  return block;
}

void giveScratch(const HvScratchBlock& block) {
  HvNoteGiven(block.bytes);
  if (block.memory != nullptr && !shelf().keep(block)) Shelf::release(block);
}

}  // namespace vblur
