// What the attributes of a picture file are, by the names that OpenImageIO gives them.
#pragma once

#include <optional>
#include <string_view>

#include "host/files/OutputFormat.h"

namespace vblur::host {

// The group of an attribute. None for those of how pixels are stored, and for the usual orientation and pixel aspect.
// `number`: its value, where it is one.
std::optional<MetadataGroup> GroupOfAttribute(std::string_view name, std::optional<float> number);
// Whether an output of the format may have an attribute of its source: not how that stored its pixels, nor what another
// format keeps for itself.
bool IsPassedAttribute(std::string_view name, bool sameFormat, std::string_view format);
// Or one of zeros and blanks, as many cameras write.
bool IsEmptyText(std::string_view text);
// Whether it has nothing but the visible characters of ASCII, and blanks.
bool IsPrintableText(std::string_view text);
// Whether a text of a PNG file may have this name.
bool IsPngKeyword(std::string_view name);
// Whether files of the format keep a text that is in no other group.
bool KeepsOtherText(std::string_view format, std::string_view name);

}  // namespace vblur::host
