// 2a - b over rows of components, limited to the type, by vector code. Floats have no limit.
#pragma once

#include <cstdint>

namespace vblur {

// n components; `out` may be `a` or `b`.
void reflectRow(const std::uint8_t* a, const std::uint8_t* b, std::int64_t n, std::uint8_t* out);
void reflectRow(const std::int16_t* a, const std::int16_t* b, std::int64_t n, std::int16_t* out);
void reflectRow(const float* a, const float* b, std::int64_t n, float* out);

}  // namespace vblur
