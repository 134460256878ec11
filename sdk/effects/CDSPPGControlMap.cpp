#include "platform/CDSPropertyPage.h"

namespace vblur {

namespace {

constexpr std::int32_t kEndOfMap = -1;

}  // namespace

void CDSPPGControlMap::Initialize() {
  if (count != 0 || entries == nullptr) return;
  while (entries[count].controlId != kEndOfMap || entries[count].property != GUID{})
    ++count;
}

const CDSPPGControlMapEntry* CDSPPGControlMap::Find(std::int32_t controlId) const {
  for (const CDSPPGControlMap* map = this; map != nullptr; map = map->parent) {
    for (std::size_t i = 0; i < map->count; ++i) {
      if (map->entries[i].controlId == controlId) return &map->entries[i];
    }
  }
  return nullptr;
}

}  // namespace vblur
