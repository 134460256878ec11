// The state of one frame: what its stages share. Settled by the driver before the first stage, rewritten by every
// render.
#pragma once

#include <cstdint>
#include <optional>

#include "composite/ApplyCrop.h"
#include "composite/StageWindow.h"
#include "effect/BlurSize.h"
#include "effect/PlaceRecord.h"
#include "image/HvInteruptable.h"
#include "image/Pixels.h"

namespace vblur {

// How fields are rendered: as pictures of half the height, or as whole pictures of which each processor works on
// every other row.
enum HvFieldRendering : std::int32_t { kHalfHeightFields = 1, kFieldRows = 2 };

struct FrameValues {
  // 0 the whole frame, 1 and 2 its fields.
  std::int32_t fieldIndex = 0;
  std::int32_t fieldMode = kHalfHeightFields;
  float fieldScale = 1.0f;
  // The crop as fractions of the picture, not limited, and its colour in 0..1 with an alpha of 0.
  std::int32_t cropMode = kCropBoxAndEdges;
  float cropLeft = 0.0f;
  float cropRight = 1.0f;
  float cropBottom = 0.0f;
  float cropTop = 1.0f;
  std::int32_t xEdgeMethod = kEdgeReflect;
  std::int32_t yEdgeMethod = kEdgeReflect;
  Rf cropColour{};
  // The region to render, both ends inclusive; of the host's choice where roiSet says so, else the whole output.
  std::int32_t roiSet = 0;
  std::int32_t regionX0 = 0;
  std::int32_t regionX1 = 0;
  std::int32_t regionY0 = 0;
  std::int32_t regionY1 = 0;
  // At the frame's time, with the transition of the frame before: no stage depends on it.
  BlurSize blurSize;
  PlaceRecord outputPlace;
  PlaceRecord inputPlace;
  PlaceRecord input2Place;
  // The channel choice of the frame writes alpha.
  std::int32_t alphaAffected = 1;
  float transitionProgress = 0.0f;
  float transitionMix = 0.0f;    // share of the second clip, after the ramp
  float transitionScale = 1.0f;  // factor on the blur amount
  bool transitionTwoPass = false;
};

struct FrameState : FrameValues {
  FrameState() = default;
  // A clone begins with its source's values, and is not interrupted with it.
  FrameState(const FrameState& other) : FrameValues(other) {}
  FrameState& operator=(const FrameState&) = delete;

  void SettleField(std::int32_t hostField);
  bool RendersHalfHeight() const { return fieldMode == kHalfHeightFields && fieldIndex != 0; }
  // What a processor is told of the field: nothing when the picture is the field.
  std::int32_t ProcessorField() const { return fieldMode == kFieldRows ? fieldIndex : 0; }

  // The host's region, its rows halved for a half-height field by integer division; none without a region.
  std::optional<StageWindow> RegionWindow() const;
  // The region, given or not, with rows scaled in 32-bit float and truncated: for the stages behind the filter.
  StageWindow ScaledWindow() const;
  CropSettings Crop() const;

  // The interrupted code, polling first.
  std::int32_t PollInterrupt() { return poll(&interrupt); }

  HvInterruptRecord interrupt;
};

}  // namespace vblur
