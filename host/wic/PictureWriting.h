// Writes picture files with the imaging component.
#pragma once

#include <string>
#include <vector>

#include "host/files/PictureLibrary.h"

namespace vblur::host {

std::vector<std::string> WritePicture(const PictureToWrite& picture, const StopTest& stop);

}  // namespace vblur::host
