// What the frame reads of the project: its sizes, and the ratios that come from them.
#pragma once

#include "effect/PlaceRecord.h"
#include "platform/IDSCoordMan.h"
#include "platform/IDSEffectHost.h"

namespace vblur {

// A content property of the effect's own host, else of the project that is open.
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

// Where an image lies; all zero for an absent one, an origin of 0 without coordinates.
void ReadImagePlacement(const IDSImage* image, PlaceRecord& place, const IDSCoordMan* coordMan,
                        const IDSEffectHost* host);

}  // namespace vblur
