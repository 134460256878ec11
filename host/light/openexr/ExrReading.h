// Opens plain OpenEXR files.
#pragma once

#include <filesystem>

#include "host/light/LightInput.h"

namespace vblur::host {

// Of scan lines of Y, of R, G and B, and of either with A, as halves or floats. Without a file for any other. Throws as
// PictureLibrary::Open does.
OpenedLight OpenExr(const std::filesystem::path& path, const ReadChoice& choice);

}  // namespace vblur::host
