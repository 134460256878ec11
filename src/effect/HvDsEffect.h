// What every effect of the family has: crop and transition parameters, and the state of the frame that
// is being rendered.
#pragma once

#include <cstdint>

#include "composite/ApplyCrop.h"
#include "effect/Parameters.h"
#include "effect/PlaceRecord.h"
#include "image/HvInteruptable.h"
#include "image/Pixels.h"

namespace vblur {

// The kinds that the effect tells apart by number.
enum HvEffectKind : std::int32_t {
  kKindFilter = 1,
  kKindGenerator = 3,
  kKindPaint = 4,  // the effect painted through a mask
  kKindTransition = 5,
};

// How fields are rendered: as pictures of half the height, or as whole pictures of which each
// processor works on every other row.
enum HvFieldRendering : std::int32_t { kHalfHeightFields = 1, kFieldRows = 2 };

// How the blur follows a transition: the values of `Effect Scaling`.
enum HvEffectScaling : std::int32_t { kDontScale = 0, kFadeInAndOut = 1, kCrossFade = 2 };

class HvDsEffect {
 protected:
  // The stage that puts masked channels back is enabled by this bit of effectFlags.
  static constexpr std::int32_t kFlagChannelMasks = 64;

  std::int32_t effectKind = kKindFilter;
  std::int32_t fieldMode = kHalfHeightFields;
  std::int32_t cropMode = kCropBoxAndEdges;
  std::int32_t effectFlags = 79;
  std::int32_t transitionMixesInputs = 1;

  CropParameters crop;
  TransitionParameters transition;

  // The frame; rewritten by every render.
  HvInterruptRecord interrupt;
  std::int32_t fieldIndex = 0;
  float fieldScale = 1.0f;
  // The crop as fractions of the picture, not limited, and its colour in 0..1 with an alpha of 0.
  float cropLeft = 0.0f;
  float cropRight = 1.0f;
  float cropBottom = 0.0f;
  float cropTop = 1.0f;
  Rf cropColour{};
  // The region to render, both ends inclusive.
  std::int32_t regionX0 = 0;
  std::int32_t regionX1 = 0;
  std::int32_t regionY0 = 0;
  std::int32_t regionY1 = 0;
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

}  // namespace vblur
