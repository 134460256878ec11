// The merge methods by name, and which kernel runs their rows.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "composite/HvMerge.h"
#include "image/HvCpu.h"

namespace vblur::test {

inline constexpr std::array kMergeMethods = {
    kMergeLuminance, kMergeChroma,   kMergeHue,        kMergeSaturation, kMergeValue,     kMergeColour,
    kMergeDarken,    kMergeLighten,  kMergeScreen,     kMergeMultiply,   kMergeAdd,       kMergeAddOver,
    kMergeAddUnder,  kMergeSubtract, kMergeDifference, kMergeOverlay,    kMergeHardLight,
};

// Of kMergeMethods, as the mix-back list has them.
inline constexpr std::array kMergeNames = {
    "Luminance", "Chroma", "Hue",      "Saturation", "Value",    "Colour",     "Darken",  "Lighten",   "Screen",
    "Multiply",  "Add",    "Add Over", "Add Under",  "Subtract", "Difference", "Overlay", "HardLight",
};
static_assert(kMergeNames.size() == kMergeMethods.size());

// At the level in use, for weights that vector code accepts. Interleaved components serve the integer form, and at 8
// bits a blend without gains or clamps; the one-lane SCALAR has planes only.
template <class Pixel, class Accum, std::int32_t One>
std::string mergeKernelName(const HvMerge<Pixel, Accum, One>& merge) {
  if (!Pixel::kIntegral) return "mergeRow 32";
  const std::string depth = sizeof(Pixel) == 4 ? " 8" : " 16";
  const auto isOneOf = [&](auto... methods) { return ((merge.method == methods) || ...); };
  const bool isSum = isOneOf(kMergeAdd, kMergeSubtract, kMergeDifference);
  const bool isProduct = isOneOf(kMergeScreen, kMergeMultiply, kMergeOverlay, kMergeHardLight);
  const bool isChoice = isOneOf(kMergeDarken, kMergeLighten);
  if (HvCpuLevel() == "SCALAR") return "mergeRow" + depth;
  if (merge.form() == MergeForm::Integer) {
    const bool flat = isSum || (sizeof(Pixel) == 4 && (isProduct || isChoice));
    return (flat ? "mergeFlatRow" : "mergeRow") + depth;
  }
  const bool blends = merge.form() != MergeForm::Gained && merge.gainA == 1.0f && merge.gainB == 1.0f;
  if (sizeof(Pixel) == 4 && blends && (isSum || isProduct)) return "mergeFlatBlendRow 8";
  return "mergeRow" + depth;
}

}  // namespace vblur::test
