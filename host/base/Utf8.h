// Texts of the effect's interfaces, which are UTF-16, as the host's, which are UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace vblur::host {

// Half of a surrogate pair becomes U+FFFD.
std::string Utf8Of(std::u16string_view text);

}  // namespace vblur::host
