// The catalogue of the process, of the kind that the platform has.
#pragma once

#include "sdk/effects/Catalogue.h"

namespace vblur::host {

// The same at each call.
Catalogue& OwnCatalogue();

}  // namespace vblur::host
