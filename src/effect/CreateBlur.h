// Makes the effect for a program that is linked with it.
#pragma once

#include <memory>

#include "platform/IDSImageEffect.h"

namespace vblur {

// A new effect with every property at its default, used as a plain filter.
std::unique_ptr<IDSImageEffect> CreateBlur();

}  // namespace vblur
