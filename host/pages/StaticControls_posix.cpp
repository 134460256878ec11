#include "host/pages/StaticControls.h"

namespace vblur::host {

HBITMAP PictureControl::Bitmap() const {
  return LoadBitmapW(Dialog().ResourceModule(), bitmap_);
}

}  // namespace vblur::host
