// What a picture file tells about itself.
#pragma once

#include <filesystem>

#include "host/files/PictureReport.h"

namespace vblur::host {

// As PictureLibrary::Report.
PictureReport DescribeFile(const std::filesystem::path& path);

}  // namespace vblur::host
