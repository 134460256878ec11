#include "host/pages/Desktop.h"

#include "host/pages/PageFrame.h"

namespace vblur::host {

bool HasDesktop() {
  return PageFrame::Hidden() != nullptr;
}

}  // namespace vblur::host
