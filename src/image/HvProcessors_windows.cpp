#include "image/HvProcessors.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include <windows.h>

namespace vblur {
namespace {

struct Groups {
  std::vector<std::int32_t> sizes;
  std::vector<KAFFINITY> masks;  // the active processors of each, which need not be the first ones
};

Groups ProcessorGroups() {
  Groups found;
  DWORD length = 0;
  GetLogicalProcessorInformationEx(RelationGroup, nullptr, &length);
  std::vector<std::byte> memory(length);
  auto* const said = reinterpret_cast<SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX*>(memory.data());
  if (length == 0 || GetLogicalProcessorInformationEx(RelationGroup, said, &length) == FALSE) return found;
  for (WORD i = 0; i < said->Group.ActiveGroupCount; ++i) {
    found.sizes.push_back(said->Group.GroupInfo[i].ActiveProcessorCount);
    found.masks.push_back(said->Group.GroupInfo[i].ActiveProcessorMask);
  }
  return found;
}

// That of the first processor; 0 where the system does not tell.
std::size_t SecondCacheBytes() {
  DWORD length = 0;
  GetLogicalProcessorInformationEx(RelationCache, nullptr, &length);
  std::vector<std::byte> memory(length);
  auto* const said = reinterpret_cast<SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX*>(memory.data());
  if (length == 0 || GetLogicalProcessorInformationEx(RelationCache, said, &length) == FALSE) return 0;
  for (std::size_t at = 0; at < length;) {
    const auto* one = reinterpret_cast<const SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX*>(memory.data() + at);
    if (one->Cache.Level == 2 && one->Cache.Type != CacheInstruction) return one->Cache.CacheSize;
    at += one->Size;
  }
  return 0;
}

// Its address lies in this library.
void Here() {}

}  // namespace

std::int32_t HvProcessorCount() {
  return static_cast<std::int32_t>(std::max<DWORD>(1, GetActiveProcessorCount(ALL_PROCESSOR_GROUPS)));
}

std::size_t HvSecondCacheBytes() {
  static const std::size_t told = SecondCacheBytes();
  return told > 0 ? told : kUsualSecondCacheBytes;
}

void HvPlaceThread(std::int32_t index, std::int32_t first) {
  const Groups groups = ProcessorGroups();
  if (groups.sizes.size() < 2) return;
  const std::int32_t group = HvGroupOfThread(index, groups.sizes, first);
  GROUP_AFFINITY place{};
  place.Group = static_cast<WORD>(group);
  place.Mask = groups.masks[static_cast<std::size_t>(group)];
  // A thread that stays where it is works all the same.
  SetThreadGroupAffinity(GetCurrentThread(), &place, nullptr);
}

std::int32_t HvCurrentGroup() {
  PROCESSOR_NUMBER number{};
  GetCurrentProcessorNumberEx(&number);
  return number.Group;
}

bool HvLibraryHold::take() {
  if (library_ != nullptr) return true;
  HMODULE library = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCWSTR>(&Here), &library);
  library_ = library;
  return library != nullptr;
}

void HvLibraryHold::release() {
  if (void* const library = std::exchange(library_, nullptr); library != nullptr) {
    FreeLibrary(static_cast<HMODULE>(library));
  }
}

}  // namespace vblur
