#include "host/pages/CheckBoxControl.h"

#include <utility>

namespace vblur::host {

bool CheckBoxControl::IsChecked() const {
  return checked_;
}

bool CheckBoxControl::Toggle() {
  if (!TakesInput()) return false;
  const auto held = Hold();
  Check(!checked_);
  TellCommand(BN_CLICKED);
  return true;
}

LRESULT CheckBoxControl::Receive(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == BM_GETCHECK) return checked_ ? 1 : 0;
  if (message != BM_SETCHECK) return PageWindow::Receive(message, wParam, lParam);
  Check(wParam != 0);
  return 0;
}

void CheckBoxControl::Check(bool checked) {
  if (std::exchange(checked_, checked) != checked) Changed();
}

}  // namespace vblur::host
