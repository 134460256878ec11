// 2a - b over rows of components, limited to the type, by vector code.
#pragma once

#include <cstdint>

namespace vblur {

// n components; `out` may be `a` or `b`.
void reflectRow(const std::uint8_t* a, const std::uint8_t* b, std::int64_t n, std::uint8_t* out);
void reflectRow(const std::int16_t* a, const std::int16_t* b, std::int64_t n, std::int16_t* out);

}  // namespace vblur
