#include "host/pages/StaticControls.h"

#include "sdk/system/SystemTypes_windows.h"

namespace vblur::host {

// The system has loaded it with the window.
HBITMAP PictureControl::Bitmap() const {
  return reinterpret_cast<HBITMAP>(Send(STM_GETIMAGE, IMAGE_BITMAP));
}

// Not every system gives back what it has loaded.
LRESULT PictureControl::Receive(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_DESTROY) {
    const auto loaded = reinterpret_cast<HGDIOBJ>(Send(STM_SETIMAGE, IMAGE_BITMAP, 0));
    if (loaded != nullptr) ::DeleteObject(loaded);
  }
  return PageWindow::Receive(message, wParam, lParam);
}

}  // namespace vblur::host
