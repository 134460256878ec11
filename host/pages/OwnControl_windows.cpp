#include "host/pages/OwnControl.h"

#include "platform/PageControls.h"
#include "sdk/system/SystemTypes_windows.h"

namespace vblur::host {

void OwnControl::Attach(HWND handle) {
  PageWindow::Attach(handle);
  SetPropW(handle, SystemText(kControlInterface), Interface());
}

void OwnControl::Detach() {
  RemovePropW(handle_, SystemText(kControlInterface));
  PageWindow::Detach();
}

void OwnControl::Changed() {
  if (isThere_) ::InvalidateRect(handle_, nullptr, FALSE);
  PageWindow::Changed();
}

LRESULT OwnControl::Receive(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT: {
      PAINTSTRUCT paint{};
      if (const HDC dc = BeginPaint(handle_, &paint); dc != nullptr) Paint(dc);
      EndPaint(handle_, &paint);
      return 0;
    }
    case WM_PRINTCLIENT: Paint(reinterpret_cast<HDC>(wParam)); return 0;
    case WM_ERASEBKGND: return 1;
    case WM_SETFOCUS:
    case WM_KILLFOCUS: ::InvalidateRect(handle_, nullptr, FALSE); return 0;
    default: return PageWindow::Receive(message, wParam, lParam);
  }
}

}  // namespace vblur::host
