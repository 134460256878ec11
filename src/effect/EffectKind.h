// The kinds of effect, and the flags for what an effect can do.
#pragma once

#include <cstdint>

namespace vblur {

// What the host uses the effect as.
enum HvEffectKind : std::int32_t {
  kKindFilter = 1,
  kKindSource = 2,
  kKindGenerator = 3,
  kKindPaint = 4,  // the effect painted through a mask
  kKindTransition = 5,
  kKindUnused = 6,  // no family makes it; it needs an input
  kKindOther = 7,
};

// The bits of effectFlags; kFlagUnread and kFlagChannelMasks are not part of the host's record.
enum HvEffectFlag : std::int32_t {
  kFlagFourthWord = 1,     // the record's fourth word is 1
  kFlagWholeFrames = 2,    // frames are rendered whole
  kFlagMasks = 4,          // takes masks, as a filter
  kFlagUnread = 8,         // set, never read
  kFlagTwoClips = 16,      // has a second clip in every kind
  kFlagTransition = 32,    // counts as a transition in every kind
  kFlagChannelMasks = 64,  // masked channels are put back
};

}  // namespace vblur
