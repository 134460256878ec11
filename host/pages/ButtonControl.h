// A push button.
#pragma once

#include "host/pages/PageWindow.h"

namespace vblur::host {

class ButtonControl final : public PageWindow {
 public:
  ButtonControl(PageDialog& dialog, const ModuleControl& control);

  // The user presses and releases it. False if it takes no input.
  bool Press();
};

}  // namespace vblur::host
