// Sets the number of threads of the process for a scope.
#pragma once

#include <cstdint>

#include "image/HvThreads.h"

namespace vblur::test {

class ThreadCount {
 public:
  explicit ThreadCount(std::int32_t count) { HvSetThreadCount(count); }
  ~ThreadCount() { HvSetThreadCount(0); }
  ThreadCount(const ThreadCount&) = delete;
  ThreadCount& operator=(const ThreadCount&) = delete;
};

inline constexpr std::int32_t kThreadCounts[] = {1, 2, 3, 7, 8};

}  // namespace vblur::test
