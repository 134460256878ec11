#include "image/HvProcessors.h"

#include <algorithm>
#include <utility>
#include <vector>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace vblur {
namespace {

const std::vector<std::int32_t>& GroupSizes() {
  static const std::vector<std::int32_t> sizes = [] {
    std::vector<std::int32_t> found;
    for (WORD group = 0; group < GetActiveProcessorGroupCount(); ++group)
      found.push_back(static_cast<std::int32_t>(GetActiveProcessorCount(group)));
    return found;
  }();
  return sizes;
}

// Its address lies in this library.
void Here() {}

}  // namespace

std::int32_t HvProcessorCount() {
  return static_cast<std::int32_t>(std::max<DWORD>(1, GetActiveProcessorCount(ALL_PROCESSOR_GROUPS)));
}

void HvPlaceThread(std::int32_t index, std::int32_t first) {
  const auto& sizes = GroupSizes();
  if (sizes.size() < 2) return;
  const std::int32_t group = HvGroupOfThread(index, sizes, first);
  const std::int32_t processors = sizes[static_cast<std::size_t>(group)];
  GROUP_AFFINITY place{};
  place.Group = static_cast<WORD>(group);
  place.Mask = processors >= 64 ? ~KAFFINITY{0} : (KAFFINITY{1} << processors) - 1;
  // A thread that stays where it is works all the same.
  SetThreadGroupAffinity(GetCurrentThread(), &place, nullptr);
}

std::int32_t HvCurrentGroup() {
  PROCESSOR_NUMBER number{};
  GetCurrentProcessorNumberEx(&number);
  return number.Group;
}

void HvLibraryHold::Take() {
  if (library_ != nullptr) return;
  HMODULE library = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCWSTR>(&Here), &library);
  library_ = library;
}

void HvLibraryHold::Release() {
  if (void* const library = std::exchange(library_, nullptr); library != nullptr) {
    FreeLibrary(static_cast<HMODULE>(library));
  }
}

}  // namespace vblur
