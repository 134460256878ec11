#include "host/sequence/Machine.h"

#include <algorithm>
#include <limits>

#include <windows.h>

namespace vblur::host {

std::int64_t MachineMemory() {
  MEMORYSTATUSEX memory{};
  memory.dwLength = sizeof memory;
  if (GlobalMemoryStatusEx(&memory) == 0) return 0;
  return static_cast<std::int64_t>(std::min<DWORDLONG>(memory.ullTotalPhys, std::numeric_limits<std::int64_t>::max()));
}

std::int64_t FreeFiles() {
  // Of all kinds, files among them.
  constexpr std::int64_t kMostHandles = std::int64_t{1} << 24;
  DWORD open = 0;
  if (GetProcessHandleCount(GetCurrentProcess(), &open) == 0) return kMostHandles;
  return std::max<std::int64_t>(kMostHandles - open, 0);
}

}  // namespace vblur::host
