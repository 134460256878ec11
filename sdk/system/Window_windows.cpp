#include "platform/Window.h"

#include "sdk/system/SystemTypes_windows.h"

namespace vblur {

HWND GetDlgItem(HWND dialog, std::int32_t id) {
  return dialog == nullptr ? nullptr : ::GetDlgItem(dialog, id);
}

bool EnableWindow(HWND window, bool enable) {
  return window != nullptr && ::EnableWindow(window, enable ? TRUE : FALSE) != FALSE;
}

LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return window == nullptr ? 0 : ::SendMessageW(window, message, wParam, lParam);
}

HANDLE GetPropW(HWND window, const char16_t* name) {
  return window == nullptr || name == nullptr ? nullptr : ::GetPropW(window, host::SystemText(name));
}

bool InvalidateRect(HWND window, const void* area, bool erase) {
  return window != nullptr && ::InvalidateRect(window, static_cast<const RECT*>(area), erase ? TRUE : FALSE) != FALSE;
}

UINT RegisterWindowMessageW(const char16_t* name) {
  return name == nullptr || *name == 0 ? 0 : ::RegisterWindowMessageW(host::SystemText(name));
}

}  // namespace vblur
