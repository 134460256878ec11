// The processors of the machine, for the pool of threads. Windows counts and schedules them in groups of at most 64,
// and a thread runs in one of them: a pool that takes all processors spreads its threads over the groups.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace vblur {

// All processors that the system reports, at least 1.
std::int32_t HvProcessorCount();

// The second cache of a processor, in bytes; a usual size where the system does not tell.
std::size_t HvSecondCacheBytes();
inline constexpr std::size_t kUsualSecondCacheBytes = std::size_t{1} << 20;

// The group for the thread of an index, when threads fill the groups of these sizes in turn from the group `first` on,
// again from there when all are full. 0 without groups or with a size below 1; `index` and `first` are at least 0.
std::int32_t HvGroupOfThread(std::int32_t index, std::span<const std::int32_t> sizes, std::int32_t first);

// Moves the calling thread, which has this index in a pool whose thread 0 runs in the group `first`, to its group.
// Nothing where there is one group only.
void HvPlaceThread(std::int32_t index, std::int32_t first);
// The calling thread's group; 0 where there are none.
std::int32_t HvCurrentGroup();

// Keeps the library that holds this code in memory while its threads run, until it is released: on Windows nothing else
// stops a host from unloading it below them.
class HvLibraryHold {
 public:
  HvLibraryHold() = default;
  HvLibraryHold(const HvLibraryHold&) = delete;
  HvLibraryHold& operator=(const HvLibraryHold&) = delete;

  // False when it cannot be held: no thread may start then.
  bool take();
  void release();

 private:
  void* library_ = nullptr;
};

}  // namespace vblur
