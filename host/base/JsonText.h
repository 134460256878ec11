// JSON documents from text, more strictly than the library reads them: no field twice, no number beyond
// a 64-bit float, no depth that no document of ours has.
#pragma once

#include <string_view>

#include <nlohmann/json.hpp>

namespace vblur::host {

// Throws Failure (wrong usage): with line and column (in bytes, from 1) for text that is not JSON, with the
// field's path for a field that an object has twice.
nlohmann::json ParseJson(std::string_view text);

}  // namespace vblur::host
