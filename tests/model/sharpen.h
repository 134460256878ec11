// Unsharp masking at a fixed strength.
#pragma once

#include <cstdint>

#include "depth.h"
#include "picture.h"
#include "window.h"

namespace model {

/// 2 × source - blurred, clamped to the format.
std::int32_t Reflected(std::int32_t source, std::int32_t blurred, Depth depth);

/// Sharpens a blurred picture in place, all four components.
void Sharpen(const Picture& source, Picture& blurred, Depth depth, const Window& window);

}  // namespace model
