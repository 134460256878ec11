// Strict JSON parsing: no duplicate fields, no numbers beyond a 64-bit float, at most 32 levels of nesting.
#pragma once

#include <string_view>

#include <nlohmann/json.hpp>

namespace vblur::host {

// Throws Failure (wrong usage): with line and column (in bytes, from 1) for text that is not JSON, with the field's
// path for a duplicate field.
nlohmann::json ParseJson(std::string_view text);

}  // namespace vblur::host
