#include "host/pages/CheckBoxControl.h"

#include <utility>

#include "sdk/system/SystemTypes_windows.h"

namespace vblur::host {

bool CheckBoxControl::IsChecked() const {
  return Send(BM_GETCHECK) == BST_CHECKED;
}

bool CheckBoxControl::Toggle() {
  if (!TakesInput()) return false;
  const auto held = Hold();
  Send(BM_CLICK);
  return true;
}

LRESULT CheckBoxControl::Receive(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != BM_SETCHECK) return PageWindow::Receive(message, wParam, lParam);
  Pass(message, wParam != 0 ? BST_CHECKED : BST_UNCHECKED, lParam);
  Look();
  return 0;
}

bool CheckBoxControl::SeesChange() {
  const bool isOther = std::exchange(checked_, IsChecked()) != checked_;
  return PageWindow::SeesChange() || isOther;
}

}  // namespace vblur::host
