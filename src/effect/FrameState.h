// The state of one frame, shared by its stages. The driver sets it before the first stage of every render.
#pragma once

#include <cstdint>
#include <optional>

#include "composite/ApplyCrop.h"
#include "composite/StageWindow.h"
#include "effect/BlurSize.h"
#include "effect/PlaceRecord.h"
#include "image/HvInteruptable.h"
#include "image/Pixels.h"
#include "platform/IVBlurFacts.h"

namespace vblur {

// How fields are rendered: as pictures of half the height, or by every other row of the whole picture.
enum HvFieldRendering : std::int32_t { kHalfHeightFields = 1, kFieldRows = 2 };

struct FrameValues {
  // 0 for a whole frame, 1 and 2 for its fields.
  std::int32_t fieldIndex = 0;
  std::int32_t fieldMode = kHalfHeightFields;
  float fieldScale = 1.0f;
  // Crop as fractions of the picture, not clamped; colour in 0..1 with alpha 0.
  std::int32_t cropMode = kCropBoxAndEdges;
  float cropLeft = 0.0f;
  float cropRight = 1.0f;
  float cropBottom = 0.0f;
  float cropTop = 1.0f;
  std::int32_t xEdgeMethod = kEdgeReflect;
  std::int32_t yEdgeMethod = kEdgeReflect;
  Rf cropColour{};
  // The region to render, both ends inclusive; the whole output unless the host gave one (roiSet).
  std::int32_t roiSet = 0;
  std::int32_t regionX0 = 0;
  std::int32_t regionX1 = 0;
  std::int32_t regionY0 = 0;
  std::int32_t regionY1 = 0;
  // Computed with the previous frame's transitionScale: no stage may depend on it.
  BlurSize blurSize;
  ReportedRecord outputPlace;
  ReportedRecord inputPlace;
  ReportedRecord input2Place;
  // The frame's channel choice writes alpha.
  std::int32_t alphaAffected = 1;
  float transitionProgress = 0.0f;
  float transitionMix = 0.0f;    // share of the second clip, after the ramp
  float transitionScale = 1.0f;  // factor on the blur amount
  bool transitionTwoPass = false;
};

struct FrameState : FrameValues {
  FrameState() = default;
  // A clone copies the values and starts uninterrupted.
  FrameState(const FrameState& other) : FrameValues(other) {}
  FrameState& operator=(const FrameState&) = delete;

  void SettleField(std::int32_t hostField);
  bool RendersHalfHeight() const { return fieldMode == kHalfHeightFields && fieldIndex != 0; }
  // The field that processors get: 0 when the picture is the field.
  std::int32_t ProcessorField() const { return fieldMode == kFieldRows ? fieldIndex : 0; }

  // The host's region, with rows halved by integer division for a half-height field; none if the host gave none.
  std::optional<StageWindow> RegionWindow() const;
  // The region with rows scaled in 32-bit float and truncated, for masks and mixes.
  StageWindow ScaledWindow() const;
  CropSettings Crop() const;

  // Polls, and returns the interrupted code.
  std::int32_t PollInterrupt() { return poll(&interrupt); }

  HvInterruptRecord interrupt;
  // None in a clone that has rendered nothing.
  FrameRefusal refusal;
};

}  // namespace vblur
