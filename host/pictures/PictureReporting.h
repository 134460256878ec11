// Reports what a picture file holds.
#pragma once

#include <filesystem>

#include "host/files/PictureReport.h"
#include "host/pictures/PictureFileMetadata.h"

namespace vblur::host {

// As PictureLibrary::Report.
PictureReport DescribeFile(const std::filesystem::path& path, const ReadChoice& choice);
// Of a picture that has been read.
PictureReport DescribePicture(const LibraryMetadata& metadata);

}  // namespace vblur::host
