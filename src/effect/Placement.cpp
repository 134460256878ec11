// The frame's region and the places of its images.
#include <cstdint>

#include "effect/Blur.h"
#include "effect/ProjectSizes.h"
#include "image/Arithmetic.h"
#include "image/HvThreadWord.h"

namespace vblur {

void Blur::SettleRegion() {
  frame.roiSet = roiSet;
  if (roiSet != 0) {
    frame.regionX0 = roiX;
    frame.regionX1 = wrapSub(wrapAdd(roiX, roiWidth), 1);
    frame.regionY0 = roiY;
    frame.regionY1 = wrapSub(wrapAdd(roiY, roiHeight), 1);
  } else {
    const DSPixelPair size = outputImage->Size();
    frame.regionX0 = 0;
    frame.regionX1 = wrapSub(size.x, 1);
    frame.regionY0 = 0;
    frame.regionY1 = wrapSub(size.y, 1);
  }
  ReadImagePlacement(inputImage, frame.inputPlace, coordMan, effectHost);
  ReadImagePlacement(outputImage, frame.outputPlace, coordMan, effectHost);
  const PlaceRecord& place = inputImage != nullptr ? frame.inputPlace : frame.outputPlace;
  frame.regionX0 = wrapAdd(frame.regionX0, place.originX);
  frame.regionX1 = wrapAdd(frame.regionX1, place.originX);
  frame.regionY0 = wrapAdd(frame.regionY0, place.originY);
  frame.regionY1 = wrapAdd(frame.regionY1, place.originY);
}

// The second input's place gets the first input's values too.
void Blur::ReportPlaces() {
  if (cloneSource == nullptr) return;
  ReportPlace(frame.outputPlace, cloneSource->frame.outputPlace);
  ReportPlace(frame.inputPlace, cloneSource->frame.inputPlace);
  ReportPlace(frame.inputPlace, cloneSource->frame.input2Place);
  // The controls belong to the viewer's thread. After a frame on another thread they follow at the next paint, pen
  // event or page.
  cloneSource->overlayPlaceStale.store(true);
  if (cloneSource->overlayThread.load() == HvThreadNumber()) cloneSource->UpdateOverlayPlacement();
}

}  // namespace vblur
