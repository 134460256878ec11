// Picture formats of the effect's own, for pictures of 32-bit floats. Only the stand-alone host has them: no other host
// hands the effect a picture of these ids, and one that asks for formats by their ids never meets them.
//
// 1.0 is full scale, of a colour and of an amount. Values are finite and from -65504 to 65504; the filter takes others
// for these limits, and a NaN for 0. Results are not limited.
#pragma once

#include "DsTypes.h"

namespace vblur {

// Red, green, blue and alpha of a pixel side by side.
inline constexpr GUID kFormatRgbaFloat = MakeGuid("{FAAF1349-0C28-4BF0-B7E8-10AA3DC5A122}");
// Masks of pictures of that format: one component.
inline constexpr GUID kFormatMaskFloat = MakeGuid("{F8FD28A7-4B42-43FF-A11E-DD9D22F5933A}");

}  // namespace vblur
