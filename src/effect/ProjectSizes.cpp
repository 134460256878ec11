#include "effect/ProjectSizes.h"

#include "platform/Content.h"

namespace vblur {

HRESULT ReadContent(const IDSEffectHost* host, const char* key, double& value) {
  return host == nullptr ? DSContentGetProperty(key, value) : host->ContentProperty(key, value);
}

ProjectUserSize ReadUserSize(const IDSEffectHost* host) {
  ProjectUserSize size;
  if (ReadContent(host, kProjectUserSizeX, size.x) != kOk || ReadContent(host, kProjectUserSizeY, size.y) != kOk) {
    return {};
  }
  return size;
}

double UserToWorldRatio(const IDSEffectHost* host) {
  double user = 0.0;
  double world = 0.0;
  if (ReadContent(host, kProjectUserSizeY, user) != kOk) return 1.0;
  if (ReadContent(host, kProjectWorldSizeY, world) != kOk) return 1.0;
  return user / world;
}

double PlacementRatio(const IDSEffectHost* host) {
  double ignored = 0.0;
  double user = 0.0;
  double world = 0.0;
  if (ReadContent(host, kProjectUserSizeX, ignored) != kOk) return 0.0;
  if (ReadContent(host, kProjectWorldSizeX, ignored) != kOk) return 0.0;
  if (ReadContent(host, kProjectUserSizeY, user) != kOk) return 0.0;
  if (ReadContent(host, kProjectWorldSizeY, world) != kOk) return 0.0;
  return user / world;
}

void ReadImagePlacement(const IDSImage* image, PlaceRecord& place, const IDSCoordMan* coordMan,
                        const IDSEffectHost* host) {
  place = {};
  if (image == nullptr) return;
  // The ratio is read once for position and once for size.
  const auto inUserUnits = [host](DSWorldPair world, float& x, float& y) {
    const double ratio = PlacementRatio(host);
    x = static_cast<float>(static_cast<double>(static_cast<float>(world.x)) * ratio);
    y = static_cast<float>(static_cast<double>(static_cast<float>(world.y)) * ratio);
  };
  inUserUnits(image->WorldPosition(), place.positionX, place.positionY);
  inUserUnits(image->WorldSize(), place.sizeX, place.sizeY);
  if (coordMan == nullptr) return;
  const DSPixelPair origin = coordMan->PixelOrigin(*image);
  place.originX = origin.x;
  place.originY = origin.y;
}

}  // namespace vblur
