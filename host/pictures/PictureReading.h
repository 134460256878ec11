// Reads picture files with the picture library.
#pragma once

#include "host/files/PictureLibrary.h"

namespace vblur::host {

// As PictureLibrary::Open.
std::unique_ptr<PictureSource> OpenForReading(const std::filesystem::path& path, const ReadChoice& choice);

}  // namespace vblur::host
