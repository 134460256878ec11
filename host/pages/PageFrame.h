// The windows of the system's that hold the dialogs of pages. Windows only.
#pragma once

#include "platform/Window.h"

namespace vblur::host {

class PageFrame {
 public:
  // Holds dialogs that nobody sees; one for each thread, until the thread's end.
  static HWND Hidden();
};

}  // namespace vblur::host
