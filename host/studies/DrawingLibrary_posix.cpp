#include "host/studies/DrawingLibrary.h"

#include "host/files/PictureLibrary.h"

namespace vblur::host {

DrawingLibrary& TheDrawingLibrary() {
  static DrawingLibrary& library = *ThePictureModule().Get<DrawingLibraryFunction>(kDrawingLibraryFunction)();
  return library;
}

}  // namespace vblur::host
