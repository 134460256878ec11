#include "host/pages/ColourChipControl.h"

#include "sdk/system/SystemTypes_windows.h"
// After the system's header.
#include <commdlg.h>

namespace vblur::host {

void ColourChipControl::Attach(HWND handle) {
  PageWindow::Attach(handle);
  SetPropW(handle, SystemText(kControlInterface), static_cast<IUnknown*>(this));
}

void ColourChipControl::Detach() {
  RemovePropW(handle_, SystemText(kControlInterface));
  PageWindow::Detach();
}

LRESULT ColourChipControl::Receive(UINT message, WPARAM wParam, LPARAM lParam) {
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
    case WM_KILLFOCUS:
    case WM_ENABLE: ::InvalidateRect(handle_, nullptr, FALSE); break;
    case WM_LBUTTONDOWN: SetFocus(handle_); return 0;
    case WM_LBUTTONUP:
      if (GetFocus() == handle_) OpenPicker();
      return 0;
    case WM_KEYDOWN:
      if (wParam != VK_SPACE) break;
      OpenPicker();
      return 0;
    default: break;
  }
  return PageWindow::Receive(message, wParam, lParam);
}

void ColourChipControl::Paint(HDC dc) const {
  RECT area{};
  GetClientRect(handle_, &area);
  DrawEdge(dc, &area, EDGE_SUNKEN, BF_RECT | BF_ADJUST);
  const auto part = [this](std::size_t i) { return static_cast<BYTE>(colour_[i]); };
  const HBRUSH brush = CreateSolidBrush(RGB(part(0), part(1), part(2)));
  FillRect(dc, &area, IsEnabled() ? brush : GetSysColorBrush(COLOR_BTNFACE));
  ::DeleteObject(brush);
  if (GetFocus() == handle_) DrawFocusRect(dc, &area);
}

void ColourChipControl::OpenPicker() {
  if (!TakesInput()) return;
  static COLORREF kept[16] = {};
  CHOOSECOLORW choice{};
  choice.lStructSize = sizeof(choice);
  choice.hwndOwner = GetAncestor(handle_, GA_ROOT);
  choice.rgbResult = RGB(colour_[0], colour_[1], colour_[2]);
  choice.lpCustColors = kept;
  choice.Flags = CC_RGBINIT | CC_FULLOPEN;
  if (ChooseColorW(&choice) == FALSE) return;
  PickColour(GetRValue(choice.rgbResult), GetGValue(choice.rgbResult), GetBValue(choice.rgbResult));
}

}  // namespace vblur::host
