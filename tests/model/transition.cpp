#include "transition.h"

#include "arithmetic.h"

namespace model {

float Ramp(float x, int ramping) {
  switch (ramping) {
    case 1: return x * x * (2.0f - x);
    case 2: return ((1.0f - x) * x + 1.0f) * x;
    case 3: return (3.0f - x * 2.0f) * (x * x);
    default: return x;
  }
}

TransitionState TransitionAt(const Properties& properties, double time, double duration) {
  TransitionState state;
  state.progress = static_cast<float>(time / duration);
  const float start = static_cast<float>(duration * properties.startFadingIn / 100.0);
  const float finish = static_cast<float>(duration * properties.finishFadingOut / 100.0);
  const float span = finish - start;
  const double raw = (time - static_cast<double>(start)) / static_cast<double>(span);
  state.mix = Ramp(static_cast<float>(Limit(raw, 0.0, 1.0)), properties.transitionRamping);

  const float ramped = Ramp(state.progress, properties.transitionRamping);
  if (properties.effectScaling == kFadeInAndOut) {
    const float doubled = ramped * 2.0f;
    state.scale = doubled > 1.0f ? 2.0f - doubled : doubled;
  } else if (properties.effectScaling == kCrossFade) {
    state.scale = ramped;
  }
  return state;
}

float CrossedScale(const Properties& properties, const TransitionState& state) {
  return 1.0f - Ramp(state.progress, properties.transitionRamping);
}

}  // namespace model
