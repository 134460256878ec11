#include "host/pages/ButtonControl.h"

namespace vblur::host {

ButtonControl::ButtonControl(PageDialog& dialog, const ModuleControl& control)
    : PageWindow(&dialog, PageWindowKind::Button, control, Widened(control.text)) {}

}  // namespace vblur::host
