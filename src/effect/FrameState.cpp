#include "effect/FrameState.h"

#include "image/Arithmetic.h"

namespace vblur {

void FrameState::SettleField(std::int32_t hostField) {
  fieldIndex = hostField == 1 || hostField == 2 ? hostField : 0;
  fieldScale = RendersHalfHeight() ? 0.5f : 1.0f;
}

std::optional<StageWindow> FrameState::RegionWindow() const {
  if (roiSet == 0) return std::nullopt;
  const std::int32_t divisor = RendersHalfHeight() ? 2 : 1;
  return StageWindow{regionX0, regionY0 / divisor, regionX1, regionY1 / divisor};
}

StageWindow FrameState::ScaledWindow() const {
  const auto scaled = [this](std::int32_t y) { return truncToInt(static_cast<float>(y) * fieldScale); };
  return {regionX0, scaled(regionY0), regionX1, scaled(regionY1)};
}

CropSettings FrameState::Crop() const {
  return {cropMode, cropLeft, cropRight, cropBottom, cropTop, xEdgeMethod, yEdgeMethod, cropColour};
}

}  // namespace vblur
