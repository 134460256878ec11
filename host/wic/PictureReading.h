// Reads picture files with the imaging component.
#pragma once

#include <memory>

#include "host/files/PictureLibrary.h"

namespace vblur::host {

std::unique_ptr<PictureSource> OpenForReading(const std::filesystem::path& path, const ReadChoice& choice);
PictureReport DescribeFile(const std::filesystem::path& path, const ReadChoice& choice);

}  // namespace vblur::host
