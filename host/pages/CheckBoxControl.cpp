#include "host/pages/CheckBoxControl.h"

namespace vblur::host {

CheckBoxControl::CheckBoxControl(PageDialog& dialog, const ModuleControl& control)
    : PageWindow(&dialog, PageWindowKind::CheckBox, control, Widened(control.text)) {}

}  // namespace vblur::host
