// Windows under the system's names: dialogs, their controls and the viewer's. On Windows sdk/system passes the calls to
// the system; elsewhere a handle is the object behind it, which gets them. User-interface thread only.
#pragma once

#include <cstdint>
#include <string_view>

#ifdef _WIN32
struct HWND__;  // the system's
#endif

namespace vblur {

using UINT = std::uint32_t;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using HANDLE = void*;

#ifdef _WIN32
using HWND = ::HWND__*;
#else
// What is behind a window handle. A window has what it overrides.
class IHostWindow {
 public:
  virtual ~IHostWindow() = default;

  // Its picture is out of date.
  virtual void Invalidate() {}
  // A control of a dialog; null if it has none of this id.
  virtual IHostWindow* Item(std::int32_t) { return nullptr; }
  // Whether it takes input. Returns whether it was disabled before.
  virtual bool Enable(bool) { return false; }
  virtual LRESULT Receive(UINT, WPARAM, LPARAM) { return 0; }
  // A handle that the window keeps under a name; null for none.
  virtual HANDLE Prop(std::u16string_view) { return nullptr; }
};
using HWND = IHostWindow*;
#endif

// Messages, with the system's numbers. Texts are zero-terminated and passed as LPARAM.
inline constexpr UINT WM_SETTEXT = 0x000C;
inline constexpr UINT WM_GETTEXT = 0x000D;  // WPARAM: the capacity; returns the length
inline constexpr UINT WM_COMMAND = 0x0111;  // WPARAM: the control's id, and what happened to it in the upper 16 bits
inline constexpr UINT BM_GETCHECK = 0x00F0;
inline constexpr UINT BM_SETCHECK = 0x00F1;
inline constexpr UINT CB_ADDSTRING = 0x0143;
inline constexpr UINT CB_GETCOUNT = 0x0146;
inline constexpr UINT CB_GETCURSEL = 0x0147;
inline constexpr UINT CB_RESETCONTENT = 0x014B;
inline constexpr UINT CB_SETCURSEL = 0x014E;
inline constexpr LRESULT CB_ERR = -1;
// What happened to a control.
inline constexpr UINT BN_CLICKED = 0;
inline constexpr UINT CBN_SELCHANGE = 1;
// How a window is shown.
inline constexpr UINT SW_HIDE = 0;
inline constexpr UINT SW_SHOWNORMAL = 1;
inline constexpr UINT SW_SHOW = 5;

// All of these do nothing without a window and return 0, false or null.
HWND GetDlgItem(HWND dialog, std::int32_t id);
bool EnableWindow(HWND window, bool enable);
LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
HANDLE GetPropW(HWND window, const char16_t* name);
// The whole window when `area` is null, which is the only use. False without a window.
bool InvalidateRect(HWND window, const void* area, bool erase);
// A message number of its own for each name, the same one each time; 0 without a name.
UINT RegisterWindowMessageW(const char16_t* name);

}  // namespace vblur
