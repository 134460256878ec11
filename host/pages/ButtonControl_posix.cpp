#include "host/pages/ButtonControl.h"

namespace vblur::host {

bool ButtonControl::Press() {
  if (!TakesInput()) return false;
  const auto held = Hold();
  TellCommand(BN_CLICKED);
  return true;
}

}  // namespace vblur::host
