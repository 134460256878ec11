// Writes plain OpenEXR files.
#pragma once

#include <string>
#include <vector>

#include "host/files/PictureLibrary.h"

namespace vblur::host {

// Whether all that such a file has of the picture is written here as the full library writes it.
bool IsPlainExr(const PictureToWrite& picture);
// As PictureLibrary::Write.
std::vector<std::string> WriteExr(const PictureToWrite& picture, const StopTest& stop);

}  // namespace vblur::host
