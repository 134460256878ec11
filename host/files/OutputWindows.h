// Where a picture lies in an output file, and which part of the file has pixels.
#pragma once

#include <cstdint>

#include "host/files/PictureLibrary.h"

namespace vblur::host {

// In the coordinates of the file.
struct OutputWindows {
  FileWindow picture;
  // What is written. In a format without windows the display window, which begins at the file's origin.
  FileWindow data;
  FileWindow display;
};

// `source` is the file that the picture was read from; null for none. Where the picture has its size, the windows are
// those of the source, and the data window grows to hold every pixel that is not all zero.
OutputWindows ChooseOutputWindows(const PictureToWrite& picture, const PictureInfo* source);

}  // namespace vblur::host
