// A picture file as the host writes it.
#pragma once

#include "host/files/PictureLibrary.h"

namespace vblur::host {

// As PictureLibrary::Write.
void WritePicture(const PictureToWrite& picture, const StopTest& stop);

}  // namespace vblur::host
