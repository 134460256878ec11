// Somebody who answers the system's picker of colours as soon as it shows. It is modal: nothing else runs meanwhile.
#pragma once

#include <optional>

#include "tests/host/pages/SystemWindows_windows.h"

namespace vblur::host {

// One at a time. Types a red if there is one, and presses OK or Cancel.
class PickerUser {
 public:
  explicit PickerUser(int button = IDCANCEL, std::optional<UINT> red = std::nullopt) {
    button_ = button;
    red_ = red;
    opened_ = 0;
    last_ = nullptr;
    timer_ = ::SetTimer(nullptr, 0, 20, &Answer);
  }
  ~PickerUser() { ::KillTimer(nullptr, timer_); }
  PickerUser(const PickerUser&) = delete;
  PickerUser& operator=(const PickerUser&) = delete;

  // Pickers so far.
  int Opened() const { return opened_; }

 private:
  // As the picker numbers it.
  static constexpr int kRed = 706;

  static BOOL CALLBACK AnswerPicker(HWND window, LPARAM) {
    if (ClassOf(window) != "#32770" || !::IsWindowVisible(window) || window == last_) return TRUE;
    last_ = window;
    ++opened_;
    if (red_) ::SetDlgItemInt(window, kRed, *red_, FALSE);
    ::PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(button_), 0);
    return FALSE;
  }
  static void CALLBACK Answer(HWND, UINT, UINT_PTR, DWORD) {
    ::EnumThreadWindows(::GetCurrentThreadId(), &AnswerPicker, 0);
  }

  // The system passes nothing to what it calls.
  inline static int button_ = IDCANCEL;
  inline static std::optional<UINT> red_;
  inline static int opened_ = 0;
  inline static HWND last_ = nullptr;
  UINT_PTR timer_;
};

}  // namespace vblur::host
