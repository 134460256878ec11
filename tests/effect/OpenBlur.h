// The effect with what it keeps to itself open to tests.
#pragma once

#include "effect/Blur.h"

namespace vblur {

class OpenBlur : public Blur {
 public:
  using Blur::effectFlags;
  using Blur::effectKind;
  using Blur::imageEffectFlags;
  using Blur::transitionMixesInputs;

  std::int32_t& fieldMode = frame.fieldMode;
  HvInterruptRecord& interrupt = frame.interrupt;

  // The name that an effect holds; of a clone too, which is a plain Blur.
  static const char16_t* NameOf(const Blur& effect) { return (effect.*&OpenBlur::name).data(); }
};

}  // namespace vblur
