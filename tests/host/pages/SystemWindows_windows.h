// What a user and the system do to windows of pages, by the system's own messages.
#pragma once

#include <array>
#include <set>
#include <string>

#include "tests/host/pages/PagedEffect.h"
// After the project's.
#include <windows.h>

namespace vblur::host {

// Carries out what is posted.
inline void Pump() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

inline HWND WindowOf(const OpenedPage& page, std::int32_t id) {
  return ::GetDlgItem(page.dialog->Handle(), id);
}

inline std::string ClassOf(HWND window) {
  std::array<char, 64> name{};
  ::GetClassNameA(window, name.data(), static_cast<int>(name.size()));
  return name.data();
}

inline std::string TitleOf(HWND window) {
  std::array<char, 512> text{};
  ::GetWindowTextA(window, text.data(), static_cast<int>(text.size()));
  return text.data();
}

// Presses and releases a key in a window.
inline void PressKey(HWND window, WPARAM key) {
  ::SendMessageW(window, WM_KEYDOWN, key, 1);
  ::SendMessageW(window, WM_KEYUP, key, 1);
}

// Types into whatever has come up to type in, and finishes.
inline void TypeInto(HWND number, const char* text, WPARAM last = VK_RETURN) {
  for (; *text != 0; ++text) {
    const HWND field = ::GetWindow(number, GW_CHILD);
    ::SendMessageW(field == nullptr ? number : field, WM_CHAR, static_cast<unsigned char>(*text), 1);
  }
  if (const HWND field = ::GetWindow(number, GW_CHILD); field != nullptr) PressKey(field, last);
}

inline void MoveMouse(HWND window, UINT message, int x, WPARAM keys = MK_LBUTTON) {
  ::SendMessageW(window, message, keys, MAKELPARAM(static_cast<WORD>(static_cast<short>(x)), 5));
}

// All windows of this thread, with their children.
inline std::size_t CountWindows() {
  static constexpr auto kAdd = [](HWND window, LPARAM all) -> BOOL {
    reinterpret_cast<std::set<HWND>*>(all)->insert(window);
    return TRUE;
  };
  static constexpr auto kAddWithChildren = [](HWND window, LPARAM all) -> BOOL {
    kAdd(window, all);
    ::EnumChildWindows(window, kAdd, all);
    return TRUE;
  };
  std::set<HWND> all;
  ::EnumThreadWindows(::GetCurrentThreadId(), kAddWithChildren, reinterpret_cast<LPARAM>(&all));
  return all.size();
}

}  // namespace vblur::host
