#include "sdk/viewer/PaintDevice.h"

namespace vblur::host {

PaintDevice& CurrentDevice() {
  thread_local PaintDevice device;
  return device;
}

}  // namespace vblur::host
