// The open project's content properties, for objects without a host of their own.
#pragma once

#include "DsTypes.h"
#include "IDSEffectHost.h"

namespace vblur {

// The keys are in IDSEffectHost.h. A failure leaves the value alone.
HRESULT DSContentGetProperty(const char* key, double& value);

}  // namespace vblur
