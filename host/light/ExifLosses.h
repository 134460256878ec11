// Fields of Exif data that an output does not keep.
#pragma once

#include <string>
#include <vector>

#include "host/files/OutputFormat.h"
#include "host/light/LightMetadata.h"

namespace vblur::host {

// Their names, of a picture whose output of the format gets these attributes: those that its reader does not give, and
// those that the format's writer does not take. None of groups that the format does not have: they are told as a whole.
std::vector<std::string> ExifFieldsLost(const PictureInfo& info, const LightAttributes& passed,
                                        const OutputFormat& format);

}  // namespace vblur::host
