#include "image/HvProcessors.h"

#include <cstddef>

namespace vblur {

std::int32_t HvGroupOfThread(std::int32_t index, std::span<const std::int32_t> sizes, std::int32_t first) {
  std::int64_t total = 0;
  for (const std::int32_t size : sizes) {
    if (size < 1) return 0;
    total += size;
  }
  if (total == 0) return 0;
  std::int64_t left = index % total;
  std::size_t group = static_cast<std::size_t>(first) % sizes.size();
  while (left >= sizes[group]) {
    left -= sizes[group];
    group = (group + 1) % sizes.size();
  }
  return static_cast<std::int32_t>(group);
}

}  // namespace vblur
