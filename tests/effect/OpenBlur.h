// The effect with protected members public.
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

  // For clones too, which are plain Blurs.
  static const char16_t* NameOf(const Blur& effect) { return (effect.*&OpenBlur::name).data(); }
};

}  // namespace vblur
