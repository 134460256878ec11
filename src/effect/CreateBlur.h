// Makes the effect for a program that is linked with it.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/IDSImageEffect.h"

namespace vblur {

// How many threads every render of the process uses; at least 1. Without a call it is the number of
// processors that the machine reports. Takes effect between renders.
void SetRenderThreads(std::int32_t count);

// A new effect with every property at its default, used as a plain filter.
std::unique_ptr<IDSImageEffect> CreateBlur();

}  // namespace vblur
