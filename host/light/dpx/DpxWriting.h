// Writes DPX files.
#pragma once

#include <string>
#include <vector>

#include "host/files/PictureLibrary.h"

namespace vblur::host {

// Whether a picture that goes to a DPX file has no metadata but those of plain files.
bool IsPlainDpx(const PictureToWrite& picture);
// As PictureLibrary::Write, of such a picture.
std::vector<std::string> WriteDpx(const PictureToWrite& picture, const StopTest& stop);

}  // namespace vblur::host
