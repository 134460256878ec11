// Fields of Exif data that the picture library does not read, or does not write into files of a format.
#pragma once

#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "host/files/OutputFormat.h"
#include "host/files/PictureInfo.h"

namespace vblur::host {

// Of a block of Exif data, without a camera's own notes and without what is true of its pixels alone.
std::vector<ExifFieldName> ExifFieldsUnread(const std::string& block);

// Of the attributes of an output, as ApplyMetadata adds them: those that a file of its format does not hold where its
// Exif data are made of them.
std::vector<ExifFieldName> ExifFieldsUnwritten(const OIIO::ImageSpec& output, const OutputFormat& format);

}  // namespace vblur::host
