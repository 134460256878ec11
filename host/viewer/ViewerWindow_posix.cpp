#include "host/viewer/ViewerWindow.h"

namespace vblur::host {

struct ViewerWindow::System : IHostWindow {
  void Invalidate() override { isInvalid = true; }

  bool isInvalid = false;
};

ViewerWindow::ViewerWindow() : system_(std::make_unique<System>()) {}
ViewerWindow::~ViewerWindow() = default;

HWND ViewerWindow::Handle() const {
  return system_.get();
}

bool ViewerWindow::IsInvalid() const {
  return system_->isInvalid;
}

void ViewerWindow::Validate() {
  system_->isInvalid = false;
}

}  // namespace vblur::host
