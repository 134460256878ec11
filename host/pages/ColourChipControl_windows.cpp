#include "host/pages/ColourChipControl.h"

#include "sdk/system/SystemTypes_windows.h"
// After the system's header.
#include <commdlg.h>

namespace vblur::host {

LRESULT ColourChipControl::Receive(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_LBUTTONDOWN:
      SetFocus(handle_);
      if (TakesInput()) SetCapture(handle_);
      return 0;
    case WM_LBUTTONUP: {
      // A click is pressed and released here.
      if (GetCapture() != handle_) return 0;
      ReleaseCapture();
      RECT area{};
      GetClientRect(handle_, &area);
      const POINT place{static_cast<std::int16_t>(LOWORD(lParam)), static_cast<std::int16_t>(HIWORD(lParam))};
      if (PtInRect(&area, place) != FALSE) OpenPicker();
      return 0;
    }
    case WM_KEYDOWN:
      if (wParam != VK_SPACE) break;
      OpenPicker();
      return 0;
    default: break;
  }
  return OwnControl::Receive(message, wParam, lParam);
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
