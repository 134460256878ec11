// The window of a viewer, as tools have it. On Windows a real one, hidden until somebody shows it; elsewhere no more
// than a handle. Belongs to the thread that makes it.
#pragma once

#include <memory>

#include "platform/Window.h"

namespace vblur::host {

class ViewerWindow {
 public:
  ViewerWindow();
  ~ViewerWindow();
  ViewerWindow(const ViewerWindow&) = delete;
  ViewerWindow& operator=(const ViewerWindow&) = delete;

  // On Windows null where the system gives none, as without a desktop.
  HWND Handle() const;
  // Whether a part of it was invalidated since Validate. Nothing of a hidden window of Windows ever is.
  bool IsInvalid() const;
  void Validate();

 private:
  struct System;

  std::unique_ptr<System> system_;
};

}  // namespace vblur::host
