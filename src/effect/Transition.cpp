// Progress, mix and blur scale of a transition.
#include "effect/Transition.h"

#include <cstdint>

#include "effect/Blur.h"

namespace vblur {
namespace {

enum Ramping : std::int32_t { kRampIn = 1, kRampOut = 2, kRampInAndOut = 3 };

// NaN passes both comparisons and stays NaN.
double LimitedShare(double share) {
  if (share < 0.0) return 0.0;
  if (share > 1.0) return 1.0;
  return share;
}

}  // namespace

float RampValue(float x, std::int32_t ramping) {
  switch (ramping) {
    case kRampIn: return x * x * (2.0f - x);
    case kRampOut: return ((1.0f - x) * x + 1.0f) * x;
    case kRampInAndOut: return (3.0f - x * 2.0f) * (x * x);
    default: return x;
  }
}

void Blur::UpdateTransition(double time) {
  frame.transitionTwoPass = false;
  if (effectKind != kKindTransition) {
    frame.transitionScale = 1.0f;
    return;
  }
  frame.transitionProgress = static_cast<float>(time / duration);
  const auto start = static_cast<float>(duration * transition.startFadingInSecondClip / 100.0);
  const auto finish = static_cast<float>(duration * transition.finishFadingOutFirstClip / 100.0);
  const double share = (time - static_cast<double>(start)) / static_cast<double>(finish - start);
  frame.transitionMix = RampValue(static_cast<float>(LimitedShare(share)), transition.ramping);

  const float ramped = RampValue(frame.transitionProgress, transition.ramping);
  switch (transition.scaling) {
    case kDontScale: frame.transitionScale = 1.0f; break;
    case kFadeInAndOut: frame.transitionScale = ramped * 2.0f > 1.0f ? 2.0f - ramped * 2.0f : ramped * 2.0f; break;
    case kCrossFade: frame.transitionScale = ramped; break;
    default: break;
  }
  if (transitionMixesInputs != 1) return;
  const bool sameGeometry =
      frame.inputPlace.originX == frame.input2Place.originX && frame.inputPlace.originY == frame.input2Place.originY &&
      frame.inputPlace.sizeX == frame.input2Place.sizeX && frame.inputPlace.sizeY == frame.input2Place.sizeY;
  frame.transitionTwoPass = !sameGeometry || transition.scaling == kCrossFade;
}

}  // namespace vblur
