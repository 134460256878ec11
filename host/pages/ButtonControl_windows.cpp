#include "host/pages/ButtonControl.h"

#include "sdk/system/SystemTypes_windows.h"

namespace vblur::host {

bool ButtonControl::Press() {
  if (!TakesInput()) return false;
  const auto held = Hold();
  Send(BM_CLICK);
  return true;
}

}  // namespace vblur::host
