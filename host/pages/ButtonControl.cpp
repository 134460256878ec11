#include "host/pages/ButtonControl.h"

namespace vblur::host {

ButtonControl::ButtonControl(PageDialog& dialog, const ModuleControl& control)
    : PageWindow(dialog, PageWindowKind::Button, control, Widened(control.text)) {}

bool ButtonControl::Press() {
  if (!TakesInput()) return false;
  const auto held = Hold();
  TellCommand(BN_CLICKED);
  return true;
}

}  // namespace vblur::host
