#include "host/pages/Desktop.h"

namespace vblur::host {

bool HasDesktop() {
  return true;
}

}  // namespace vblur::host
