// Arithmetic on whole pixels that the mixes and the blend operations share.
#pragma once

#include <cstdint>
#include <limits>

#include "image/Arithmetic.h"
#include "image/Pixels.h"

namespace vblur {

template <class Pixel>
constexpr Rf widenedToFloat(const Pixel& p) {
  Rf result{};
  result.red = static_cast<float>(p.red);
  result.green = static_cast<float>(p.green);
  result.blue = static_cast<float>(p.blue);
  result.alpha = static_cast<float>(p.alpha);
  return result;
}

constexpr Rf scaledBy(const Rf& p, float gain) {
  Rf result{};
  result.red = p.red * gain;
  result.green = p.green * gain;
  result.blue = p.blue * gain;
  result.alpha = p.alpha * gain;
  return result;
}

// To -most..most. Two choices of two, each an instruction of vector code; NaN gives an end.
template <class T>
constexpr T withinMost(T v, T most) {
  const T above = v > -most ? v : -most;
  return above < most ? above : most;
}

// A pixel times a gain as an operand of a merge of Pixels. One of floats is limited to 2^60, far beyond all that is
// carried, so that no product of two overflows.
template <class Pixel>
constexpr Rf gained(const Rf& p, float gain) {
  Rf result = scaledBy(p, gain);
  if constexpr (!Pixel::kIntegral) {
    constexpr float kMost = 0x1p60f;
    result.red = withinMost(result.red, kMost);
    result.green = withinMost(result.green, kMost);
    result.blue = withinMost(result.blue, kMost);
    result.alpha = withinMost(result.alpha, kMost);
  }
  return result;
}

constexpr Rf weightedSum(const Rf& a, float weightA, const Rf& b, float weightB) {
  Rf result{};
  result.red = a.red * weightA + b.red * weightB;
  result.green = a.green * weightA + b.green * weightB;
  result.blue = a.blue * weightA + b.blue * weightB;
  result.alpha = a.alpha * weightA + b.alpha * weightB;
  return result;
}

// All four components stored, as storeClamped does.
template <class Pixel>
constexpr Pixel finished(const Rf& p) {
  Pixel result{};
  result.red = storeClamped<Pixel>(p.red);
  result.green = storeClamped<Pixel>(p.green);
  result.blue = storeClamped<Pixel>(p.blue);
  result.alpha = storeClamped<Pixel>(p.alpha);
  return result;
}

template <class Pixel>
constexpr Pixel withAlpha(Pixel pixel, ComponentOf<Pixel> alpha) {
  pixel.alpha = alpha;
  return pixel;
}

// One pixel or the other. By component, which vector code of floats needs.
template <class Pixel>
constexpr Pixel eitherPixel(bool first, const Pixel& a, const Pixel& b) {
  Pixel result{};
  result.red = first ? a.red : b.red;
  result.green = first ? a.green : b.green;
  result.blue = first ? a.blue : b.blue;
  result.alpha = first ? a.alpha : b.alpha;
  return result;
}

// One function of two components for all four.
template <class Pixel, class Function>
constexpr Pixel ofComponents(const Pixel& a, const Pixel& b, const Function& function) {
  Pixel result{};
  result.red = function(a.red, b.red);
  result.green = function(a.green, b.green);
  result.blue = function(a.blue, b.blue);
  result.alpha = function(a.alpha, b.alpha);
  return result;
}

// a over b by an amount.
template <class Pixel>
constexpr Pixel mixPixels(const Pixel& a, const Pixel& b, AmountOf<Pixel> m) {
  return ofComponents(a, b, [m](auto p, auto q) { return mixComponent<Pixel>(p, q, m); });
}

// A weighted sum in doubles, where no product overflows and only the result is rounded: with weights that sum to 1 it
// lies between its components. Limited to the largest float.
constexpr Rf weightedInDoubles(const Rf& a, const Rf& b, double weightA, double weightB) {
  return ofComponents(a, b, [weightA, weightB](double p, double q) {
    constexpr double kMost = std::numeric_limits<float>::max();
    return static_cast<float>(withinMost(p * weightA + q * weightB, kMost));
  });
}

// A result over its source by the source's alpha; alpha and the named colours are the source's.
template <class Pixel>
constexpr Pixel mixedByAlpha(const Pixel& result, const Pixel& source, std::int32_t named) {
  Pixel mixed = source;
  if ((named & 1) == 0) mixed.red = mixComponent<Pixel>(result.red, source.red, source.alpha);
  if ((named & 2) == 0) mixed.green = mixComponent<Pixel>(result.green, source.green, source.alpha);
  if ((named & 4) == 0) mixed.blue = mixComponent<Pixel>(result.blue, source.blue, source.alpha);
  return mixed;
}

// The sum of the colours; in floats the order of the terms decides the last bit.
constexpr float colourSum(const Rf& p) {
  return p.red + p.green + p.blue;
}

// Components of at most 16 bits: the sum stays below 2^17.
template <class Pixel>
constexpr std::int32_t colourSum(const Pixel& p) {
  return std::int32_t{p.red} + p.green + p.blue;
}

}  // namespace vblur
