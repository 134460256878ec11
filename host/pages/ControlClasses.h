// The window classes of the host's own controls, "dsnewnumberctrl" and "dsnewcolorchipctrl". Windows only.
#pragma once

#include <memory>

#include "platform/Window.h"

struct HDC__;  // the system's
struct HINSTANCE__;

namespace vblur::host {

class OwnControl;

// Once for all; any module's dialogs may have them. A window of them makes its control as it is made, and keeps it
// until it ends. Its text is read as ControlText.h says, the class aside: of "Blur;min=0;max=720" the title is "Blur".
// The control's messages go to the window's parent.
void RegisterControlClasses();
// What a window of them has made; null for other windows.
std::shared_ptr<OwnControl> ControlMadeBy(HWND window);
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
