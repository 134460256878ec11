// Writes PNG files.
#pragma once

#include <string>
#include <vector>

#include "host/files/PictureLibrary.h"

namespace vblur::host {

// Whether a picture that goes to a PNG file has no metadata but those of plain PNG files.
bool IsPlainPng(const PictureToWrite& picture);
// As PictureLibrary::Write, of such a picture.
std::vector<std::string> WritePng(const PictureToWrite& picture, const StopTest& stop);

}  // namespace vblur::host
