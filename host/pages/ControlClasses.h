// The window classes of the host's own controls, "dsnewnumberctrl" and "dsnewcolorchipctrl". Windows only.
#pragma once

#include "platform/Window.h"

struct HDC__;  // the system's
struct HINSTANCE__;

namespace vblur::host {

// Once for all; any module's dialogs may have them. A window of them is plain until a page's dialog ties it to its
// control, which keeps its interface in the window's property kControlInterface.
void RegisterControlClasses();
// The module that this is part of.
::HINSTANCE__* OwnModule();

// While it lives the device context has the font of a window.
class WindowFont {
 public:
  WindowFont(::HDC__* dc, HWND window);
  ~WindowFont();
  WindowFont(const WindowFont&) = delete;
  WindowFont& operator=(const WindowFont&) = delete;

 private:
  ::HDC__* dc_;
  void* before_;
};

}  // namespace vblur::host
