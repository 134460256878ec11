#include "host/sequence/Machine.h"

#include <algorithm>
#include <limits>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace vblur::host {

std::int64_t MachineMemory() {
  const std::int64_t pages = ::sysconf(_SC_PHYS_PAGES);
  const std::int64_t pageBytes = ::sysconf(_SC_PAGESIZE);
  return pages > 0 && pageBytes > 0 ? pages * pageBytes : 0;
}

std::int64_t FreeFiles() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return std::numeric_limits<std::int64_t>::max();
  // Of limits beyond this one, what is open is a small part.
  constexpr rlim_t kCounted = 1024;
  const auto counted = static_cast<int>(std::min(limit.rlim_cur, kCounted));
  std::int64_t open = 0;
  for (int file = 0; file < counted; ++file)
    open += ::fcntl(file, F_GETFD) >= 0 ? 1 : 0;
  constexpr rlim_t kMost = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int64_t>(std::min(limit.rlim_cur, kMost)) - open;
}

}  // namespace vblur::host
