#include "platform/Module.h"

#include "sdk/system/SystemTypes_windows.h"

namespace vblur {

std::int32_t LoadStringW(HMODULE module, std::int32_t id, char16_t* buffer, std::int32_t capacity) {
  if (module == nullptr || buffer == nullptr || capacity < 1) return 0;
  buffer[0] = 0;
  return ::LoadStringW(module, static_cast<::UINT>(id), host::SystemText(buffer), capacity);
}

HBITMAP LoadBitmapW(HMODULE module, std::int32_t id) {
  if (module == nullptr) return nullptr;
  return ::LoadBitmapW(module, MAKEINTRESOURCEW(static_cast<WORD>(id)));
}

}  // namespace vblur
