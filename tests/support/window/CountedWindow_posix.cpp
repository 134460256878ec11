#include "tests/support/window/CountedWindow.h"

namespace vblur::test {

struct CountedWindow::Counting : IHostWindow {
  void Invalidate() override { ++count; }

  int count = 0;
};

CountedWindow::CountedWindow() : counting_(std::make_unique<Counting>()) {}
CountedWindow::~CountedWindow() = default;

HWND CountedWindow::Handle() const {
  return counting_.get();
}

int CountedWindow::Invalidations() {
  return counting_->count;
}

}  // namespace vblur::test
