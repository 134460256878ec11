// The controls of the host's own, number control and colour chip. Each answers for its interface: its window keeps it
// under the name kControlInterface.
#pragma once

#include <memory>

#include "host/pages/PageWindow.h"
#include "platform/Com.h"

namespace vblur::host {

// On Windows the window's class makes it with the window (ControlClasses.h).
class OwnControl : public PageWindow {
 public:
#ifndef _WIN32
  HANDLE Prop(std::u16string_view name) override;
#endif

 protected:
  using PageWindow::PageWindow;

  // Borrowed: references do not keep the control.
  virtual IUnknown* Interface() = 0;
#ifdef _WIN32
  friend struct ControlClass;

  void Attach(HWND handle) override;
  void Detach() override;
  void Changed() override;
  LRESULT Receive(UINT message, WPARAM wParam, LPARAM lParam) override;
  // The whole of its window.
  virtual void Paint(::HDC__* dc) const = 0;
#endif
};

}  // namespace vblur::host
