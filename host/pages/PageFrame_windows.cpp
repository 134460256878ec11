#include "host/pages/PageFrame.h"

#include "host/pages/ControlClasses.h"
#include "sdk/system/SystemTypes_windows.h"

namespace vblur::host {

HWND PageFrame::Hidden() {
  thread_local HWND hidden = nullptr;
  if (hidden == nullptr || !IsWindow(hidden)) {
    hidden = CreateWindowExW(0, L"Static", nullptr, WS_POPUP, 0, 0, 800, 800, nullptr, nullptr, OwnModule(), nullptr);
  }
  return hidden;
}

}  // namespace vblur::host
