#include "platform/Window.h"

#include <map>
#include <string>

namespace vblur {

HWND GetDlgItem(HWND dialog, std::int32_t id) {
  return dialog == nullptr ? nullptr : dialog->Item(id);
}

bool EnableWindow(HWND window, bool enable) {
  return window != nullptr && window->Enable(enable);
}

LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return window == nullptr ? 0 : window->Receive(message, wParam, lParam);
}

HANDLE GetPropW(HWND window, const char16_t* name) {
  return window == nullptr || name == nullptr ? nullptr : window->Prop(name);
}

bool InvalidateRect(HWND window, const void*, bool) {
  if (window == nullptr) return false;
  window->Invalidate();
  return true;
}

UINT RegisterWindowMessageW(const char16_t* name) {
  constexpr UINT kFirst = 0xC000;  // the system's first number for registered messages
  if (name == nullptr || *name == 0) return 0;
  static std::map<std::u16string, UINT> registered;
  return registered.emplace(name, kFirst + static_cast<UINT>(registered.size())).first->second;
}

}  // namespace vblur
