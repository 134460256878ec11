#include "platform/Module.h"

#include <algorithm>

namespace vblur {

std::int32_t LoadStringW(HMODULE module, std::int32_t id, char16_t* buffer, std::int32_t capacity) {
  if (module == nullptr || buffer == nullptr || capacity < 1) return 0;
  buffer[0] = 0;
  const auto found = std::ranges::find(module->strings, id, &ModuleString::id);
  if (found == module->strings.end()) return 0;
  const auto length = std::min(static_cast<std::int32_t>(found->text.size()), capacity - 1);
  std::copy_n(found->text.begin(), length, buffer);
  buffer[length] = 0;
  return length;
}

const ModuleBitmap* LoadBitmapW(HMODULE module, std::int32_t id) {
  if (module == nullptr) return nullptr;
  const auto found = std::ranges::find(module->bitmaps, id, &ModuleBitmap::id);
  return found == module->bitmaps.end() ? nullptr : &*found;
}

const ModuleDialog* FindDialog(HMODULE module, std::int32_t id) {
  if (module == nullptr) return nullptr;
  const auto found = std::ranges::find(module->dialogs, id, &ModuleDialog::id);
  return found == module->dialogs.end() ? nullptr : &*found;
}

}  // namespace vblur
