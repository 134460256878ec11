// A picture file as the host writes it.
#pragma once

#include "host/PictureLibrary.h"

namespace vblur::host {

// As PictureLibrary::Write.
void WritePicture(const PictureToWrite& picture, const StopTest& stop);

}  // namespace vblur::host
