// Names of the texts of PNG files, as the full picture library gives and writes them.
#pragma once

#include <string>
#include <string_view>

namespace vblur::host {

// Whether a text of this keyword is one and nothing else: neither a number nor Exif data, a resolution, or part of a
// format's header by another name.
bool IsPlainKeyword(std::string_view keyword);
// The name of a keyword in the description of a picture, and back.
std::string NameOfKeyword(const std::string& keyword);
std::string KeywordOfName(const std::string& name);

}  // namespace vblur::host
