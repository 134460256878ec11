// Writes JPEG files.
#pragma once

#include <string>
#include <vector>

#include "host/files/PictureLibrary.h"

namespace vblur::host {

// Whether a picture that goes to a JPEG file has no metadata but those of plain files.
bool IsPlainJpeg(const PictureToWrite& picture);
// As PictureLibrary::Write, of such a picture.
std::vector<std::string> WriteJpeg(const PictureToWrite& picture, const StopTest& stop);

}  // namespace vblur::host
