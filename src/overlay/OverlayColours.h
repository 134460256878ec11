// The overlay's fixed colours.
#pragma once

#include "overlay/HvGeometry.h"

namespace vblur {

inline constexpr HvColour kHvHighlight{1.0f, 1.0f, 1.0f};
inline constexpr HvColour kHvGrey{0.6f, 0.6f, 0.6f};  // background of groups
inline constexpr HvColour kHvDark{0.1f, 0.1f, 0.1f};  // shadow of texts, outline of dots
inline constexpr HvColour kHvTipText{1.0f, 1.0f, 0.0f};
inline constexpr HvColour kHvTranslateHandle{0.7f, 0.0f, 0.0f};  // and a rectangle's own
inline constexpr HvColour kHvRotateHandle{0.0f, 0.6f, 0.0f};
inline constexpr HvColour kHvScaleHandle{0.0f, 0.0f, 0.9f};

}  // namespace vblur
