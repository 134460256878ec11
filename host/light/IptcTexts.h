// IPTC data of JPEG files: the texts that Exif data have, too, under names of their own.
#pragma once

#include <string>
#include <string_view>

#include "host/light/LightMetadata.h"

namespace vblur::host {

// Whether an attribute of this name is one of these texts, as in "IPTC:Caption".
bool IsIptcText(std::string_view name);

// A segment of image resources (8BIM), as the full library makes it: each text, and what has it in Exif data. Empty for
// none.
std::string IptcSegmentOf(const LightAttributes& attributes);

// Adds the texts of such a segment. False for one with anything else.
bool TakeIptcSegment(std::string_view segment, LightAttributes& attributes);

}  // namespace vblur::host
