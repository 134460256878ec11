// Bytes that files pack (zlib).
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vblur::host {

// Nothing for damaged ones, and for more than about `most` bytes.
std::optional<std::string> Unpacked(std::string_view packed, std::size_t most);

}  // namespace vblur::host
