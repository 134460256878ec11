// Where the frame's images and its region lie.
#include <cstdint>
#include <thread>

#include "effect/Blur.h"
#include "image/Arithmetic.h"

namespace vblur {

void Blur::ReadImagePlacement(const IDSImage* image, PlaceRecord& place) const {
  place = {};
  if (image == nullptr) return;
  // The ratio is read for each of the two.
  const auto inUserUnits = [this](DSWorldPair world, float& x, float& y) {
    const double ratio = PlacementRatio();
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

void Blur::SettleRegion() {
  if (roiSet != 0) {
    regionX0 = roiX;
    regionX1 = wrapSub(wrapAdd(roiX, roiWidth), 1);
    regionY0 = roiY;
    regionY1 = wrapSub(wrapAdd(roiY, roiHeight), 1);
  } else {
    const DSPixelPair size = outputImage->Size();
    regionX0 = 0;
    regionX1 = size.x - 1;
    regionY0 = 0;
    regionY1 = size.y - 1;
  }
  ReadImagePlacement(inputImage, inputPlace);
  ReadImagePlacement(outputImage, outputPlace);
  const PlaceRecord& place = inputImage != nullptr ? inputPlace : outputPlace;
  regionX0 = wrapAdd(regionX0, place.originX);
  regionX1 = wrapAdd(regionX1, place.originX);
  regionY0 = wrapAdd(regionY0, place.originY);
  regionY1 = wrapAdd(regionY1, place.originY);
}

// What the overlay shows of a clone's frame is the first input: the second one's place is the first's.
void Blur::ReportPlaces() {
  if (cloneSource == nullptr) return;
  ReportPlace(outputPlace, cloneSource->outputPlace);
  ReportPlace(inputPlace, cloneSource->inputPlace);
  ReportPlace(inputPlace, cloneSource->input2Place);
  // The controls belong to the thread of the viewer: after a frame of another thread they follow at the next paint,
  // pen event or page.
  cloneSource->overlayPlaceStale.store(true);
  if (cloneSource->overlayThread.load() == std::this_thread::get_id()) cloneSource->UpdateOverlayPlacement();
}

StageWindow Blur::RegionWindow() const {
  const std::int32_t divisor = RendersHalfHeight() ? 2 : 1;
  return {regionX0, regionY0 / divisor, regionX1, regionY1 / divisor};
}

StageWindow Blur::ScaledWindow() const {
  const auto scaled = [this](std::int32_t y) { return truncToInt(static_cast<float>(y) * fieldScale); };
  return {regionX0, scaled(regionY0), regionX1, scaled(regionY1)};
}

}  // namespace vblur
