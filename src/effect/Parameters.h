// The plain values of the properties, with the defaults of the property table.
#pragma once

#include <cstdint>

#include "properties/PropertyTable.h"

namespace vblur {

namespace parameters {

consteval double NumberDefault(PropertyId id) {
  return PropertyOf(id).defaultValue;
}

consteval std::int32_t WholeDefault(PropertyId id) {
  return static_cast<std::int32_t>(PropertyOf(id).defaultValue);
}

}  // namespace parameters

struct BlurParameters {
  double blur = parameters::NumberDefault(PropertyId::Blur);
  double aspect = parameters::NumberDefault(PropertyId::Aspect);
  std::int32_t channels = parameters::WholeDefault(PropertyId::Channels);
  std::int32_t method = parameters::WholeDefault(PropertyId::Method);
  std::int32_t mixBack = parameters::WholeDefault(PropertyId::MixBack);
  double blend = parameters::NumberDefault(PropertyId::Blend);
  double effectGain = parameters::NumberDefault(PropertyId::EffectGain);
  double sourceGain = parameters::NumberDefault(PropertyId::SourceGain);
  std::int32_t hideOverlayControls = parameters::WholeDefault(PropertyId::HideOverlayControls);
};

// Non-zero: the effect shows in the channel. Blue comes before green.
struct MaskParameters {
  std::int32_t red = parameters::WholeDefault(PropertyId::MaskRed);
  std::int32_t blue = parameters::WholeDefault(PropertyId::MaskBlue);
  std::int32_t green = parameters::WholeDefault(PropertyId::MaskGreen);
  std::int32_t alpha = parameters::WholeDefault(PropertyId::MaskAlpha);
};

struct CropParameters {
  double left = parameters::NumberDefault(PropertyId::CropLeft);
  double right = parameters::NumberDefault(PropertyId::CropRight);
  double bottom = parameters::NumberDefault(PropertyId::CropBottom);
  double top = parameters::NumberDefault(PropertyId::CropTop);
  std::int32_t xEdgeMethod = parameters::WholeDefault(PropertyId::XEdgeMethod);
  std::int32_t yEdgeMethod = parameters::WholeDefault(PropertyId::YEdgeMethod);
  double colourR = parameters::NumberDefault(PropertyId::CropColourR);
  double colourG = parameters::NumberDefault(PropertyId::CropColourG);
  double colourB = parameters::NumberDefault(PropertyId::CropColourB);
  double colourA = parameters::NumberDefault(PropertyId::CropColourA);  // stored and shown, never rendered
  std::int32_t displayCropped = parameters::WholeDefault(PropertyId::DisplayCropped);
  std::int32_t blankCropped = parameters::WholeDefault(PropertyId::BlankCropped);
};

struct TransitionParameters {
  double finishFadingOutFirstClip = parameters::NumberDefault(PropertyId::FinishFadingOutFirstClip);
  double startFadingInSecondClip = parameters::NumberDefault(PropertyId::StartFadingInSecondClip);
  std::int32_t ramping = parameters::WholeDefault(PropertyId::TransitionRamping);
  std::int32_t scaling = parameters::WholeDefault(PropertyId::EffectScaling);
};

}  // namespace vblur
