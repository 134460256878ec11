// Writes TIFF files.
#pragma once

#include <string>
#include <vector>

#include "host/files/PictureLibrary.h"

namespace vblur::host {

// Whether a picture that goes to a TIFF file has usual samples and no metadata but those of plain files.
bool IsPlainTiff(const PictureToWrite& picture);
// As PictureLibrary::Write, of such a picture.
std::vector<std::string> WriteTiff(const PictureToWrite& picture, const StopTest& stop);

}  // namespace vblur::host
