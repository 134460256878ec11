// Class id of the viewer tool; as an interface id it leads to the HvTInteract object itself.
#pragma once

#include "platform/DsTypes.h"

namespace vblur {

inline constexpr GUID kHvTInteractClass = MakeGuid("{0DDF6A46-E387-49E6-A334-827E9F4CB919}");

}  // namespace vblur
