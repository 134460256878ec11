// Writes picture files with the picture library.
#pragma once

#include <string>
#include <vector>

#include "host/files/PictureLibrary.h"

namespace vblur::host {

// As PictureLibrary::Write.
std::vector<std::string> WritePicture(const PictureToWrite& picture, const StopTest& stop);

}  // namespace vblur::host
