// Reads plain DPX files.
#pragma once

#include <filesystem>

#include "host/light/LightInput.h"

namespace vblur::host {

// Without a file for one that is not plain. Throws as PictureLibrary::Open does.
OpenedLight OpenDpx(const std::filesystem::path& path, const ReadChoice& choice);

}  // namespace vblur::host
