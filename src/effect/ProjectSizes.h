// The project's sizes, their ratios, and the placement of images in the project.
#pragma once

#include "effect/PlaceRecord.h"
#include "platform/IDSCoordMan.h"
#include "platform/IDSEffectHost.h"

namespace vblur {

// Reads a content property from the effect's host, or from the open project when it has none.
HRESULT ReadContent(const IDSEffectHost* host, const char* key, double& value);

struct ProjectUserSize {
  double x = 1.0;
  double y = 1.0;
};

// 1 by 1 when either size cannot be read.
ProjectUserSize ReadUserSize(const IDSEffectHost* host);
// User size over world size, Y: 1.0 when one of them cannot be read.
double UserToWorldRatio(const IDSEffectHost* host);
// The same for placements: 0.0 when any of the four sizes cannot be read.
double PlacementRatio(const IDSEffectHost* host);

// All zero for an absent image; an origin of 0 without coordMan.
void ReadImagePlacement(const IDSImage* image, PlaceRecord& place, const IDSCoordMan* coordMan,
                        const IDSEffectHost* host);

}  // namespace vblur
