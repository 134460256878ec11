#include "host/pages/StaticControls.h"

#include "sdk/system/SystemTypes_windows.h"

namespace vblur::host {

// The system has loaded it with the window.
HBITMAP PictureControl::Bitmap() const {
  return reinterpret_cast<HBITMAP>(Send(STM_GETIMAGE, IMAGE_BITMAP));
}

}  // namespace vblur::host
