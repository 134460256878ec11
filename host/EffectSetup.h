// Puts the properties of a job on the effect.
#pragma once

#include "host/PropertyStore.h"
#include "platform/IDSImageEffect.h"

namespace vblur::host {

// Puts the plain value of every property of the table: what was set, or the default. An animated
// property gets its default, since the effect asks its EffectHost for the value at each time. Throws
// Failure (wrong usage) when the effect refuses a property.
void ApplyProperties(const PropertyStore& properties, IDSImageEffect& effect);

}  // namespace vblur::host
