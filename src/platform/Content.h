// The open project's content properties, for objects without a host of their own.
#pragma once

#include "DsTypes.h"
#include "IDSEffectHost.h"

namespace vblur {

// The keys are in IDSEffectHost.h. On failure the value is unchanged.
HRESULT DSContentGetProperty(const char* key, double& value);

}  // namespace vblur
