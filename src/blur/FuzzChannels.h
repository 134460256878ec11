// What the filter works on for each value of the property Channels. The two lists do not run in step.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

#include "blur/FuzzSampler.h"

namespace vblur {

// A value out of range stands for RGBA.
constexpr FuzzMode fuzzModeOf(std::int32_t channels) {
  constexpr FuzzMode kModes[] = {kFuzzRGB,   kFuzzRGBA,      kFuzzGrey,   kFuzzRed, kFuzzGreen, kFuzzBlue,
                                 kFuzzAlpha, kFuzzLuminance, kFuzzChroma, kFuzzU,   kFuzzV};
  const bool listed = channels >= 0 && static_cast<std::size_t>(channels) < std::size(kModes);
  return listed ? kModes[channels] : kFuzzRGBA;
}

}  // namespace vblur
