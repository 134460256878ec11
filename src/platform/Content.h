// Facts about the project that is open in the host, for objects that have no host of their own to ask.
#pragma once

#include "DsTypes.h"
#include "IDSEffectHost.h"

namespace vblur {

// Reads one content property; the keys stand in IDSEffectHost.h. A failure leaves the value alone.
HRESULT DSContentGetProperty(const char* key, double& value);

}  // namespace vblur
