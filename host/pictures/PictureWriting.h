// Writes picture files with the picture library.
#pragma once

#include "host/files/PictureLibrary.h"

namespace vblur::host {

// As PictureLibrary::Write.
void WritePicture(const PictureToWrite& picture, const StopTest& stop);

}  // namespace vblur::host
