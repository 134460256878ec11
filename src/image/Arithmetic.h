// The arithmetic rules of all pixel loops: floats are converted by truncation toward zero, never to the nearest, and
// 32-bit sums and products wrap. Pixels of floats store what was computed.
#pragma once

#include <cstdint>
#include <type_traits>

#include "image/Pixels.h"

namespace vblur {

// Float to a 32-bit integer, toward zero. What does not fit, and NaN, gives -2147483648 on every
// platform, where a cast would be undefined.
constexpr std::int32_t truncToInt(double v) {
  return v > -2147483649.0 && v < 2147483648.0 ? static_cast<std::int32_t>(v) : kInt32Min;
}

constexpr std::int32_t truncToInt(float v) {
  return v >= -2147483648.0f && v < 2147483648.0f ? static_cast<std::int32_t>(v) : kInt32Min;
}

// 32-bit arithmetic that wraps instead of overflowing. The filter's products fit, as stated at each; only negative
// radii and sums that are multiplied by 0 overflow.
constexpr std::int32_t wrapAdd(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

constexpr std::int32_t wrapSub(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

constexpr std::int32_t wrapMul(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

// Floor, for the cell of a coordinate: the only conversion that does not truncate.
constexpr std::int32_t floorToInt(float v) {
  const std::int32_t i = truncToInt(v);
  return v < 0.0f && static_cast<float>(i) != v ? wrapSub(i, 1) : i;
}

// Keeps the low bits, without a clamp: the value fits, or the caller wants the bits.
template <class Component>
constexpr Component storeNarrow(std::int32_t v) {
  return static_cast<Component>(v);
}

// The one clamp. If the bounds are crossed: `low` for values below it, `high` for all others.
template <class T>
constexpr T clampTo(T v, T low, T high) {
  return low > v ? low : v > high ? high : v;
}

// A computed value as a component: clamped to the component's range in float, then truncated. A component of floats has
// no range, and keeps it.
template <class Pixel>
constexpr typename Pixel::Component storeClamped(float v) {
  if constexpr (Pixel::kIntegral) {
    return storeNarrow<typename Pixel::Component>(
        truncToInt(clampTo(v, static_cast<float>(Pixel::kMin), static_cast<float>(Pixel::kMax))));
  } else {
    return v;
  }
}

template <class Pixel>
requires(Pixel::kIntegral) constexpr typename Pixel::Component storeClamped(std::int32_t v) {
  return storeNarrow<typename Pixel::Component>(v < Pixel::kMin ? Pixel::kMin : v > Pixel::kMax ? Pixel::kMax : v);
}

// b + ((a - b) * m) / Top with a truncating division. The product fits: a difference of two
// components times an amount stays below 65536 * 32768 = 2^31.
template <std::int32_t Top>
constexpr std::int32_t mixInt(std::int32_t a, std::int32_t b, std::int32_t m) {
  return b + wrapMul(a - b, m) / Top;
}

// An amount in 0..1 as an integer in 0..Top.
template <std::int32_t Top>
constexpr std::int32_t amountFromFloat(float f) {
  const std::int32_t m = truncToInt(f * static_cast<float>(Top));
  return m < 0 ? 0 : m > Top ? Top : m;
}

// The same in floats: b + (a - b) * m, exactly b for m up to 0 and for NaN, exactly a for m from 1 on, and never beyond
// the two. Up to half the largest float nothing overflows.
constexpr float mixFloat(float a, float b, float m) {
  const float between = b + (a - b) * m;
  return m > 0.0f ? m < 1.0f ? between : a : b;
}

// The amount of a mix in the scale of a pixel: an integer in 0..Top, or a float in 0..1.
template <class Pixel>
using AmountOf = std::conditional_t<Pixel::kIntegral, std::int32_t, float>;

// An amount in 0..1 in that scale; NaN is 0.
template <class Pixel>
constexpr AmountOf<Pixel> amountOf(float f) {
  if constexpr (Pixel::kIntegral) {
    return amountFromFloat<kTopOf<Pixel>>(f);
  } else {
    return f > 0.0f ? f < 1.0f ? f : 1.0f : 0.0f;
  }
}

// A component of a over b by such an amount. Of integers the low bits are kept: an amount in 0..Top gives what fits.
template <class Pixel>
constexpr typename Pixel::Component mixComponent(typename Pixel::Component a, typename Pixel::Component b,
                                                 AmountOf<Pixel> m) {
  if constexpr (Pixel::kIntegral) {
    return storeNarrow<typename Pixel::Component>(mixInt<kTopOf<Pixel>>(a, b, m));
  } else {
    return mixFloat(a, b, m);
  }
}

// A colour component in 0..1 in the scale of a pixel, where 255, 16384 or 1.0f is 1.0; not clamped.
template <class Pixel>
constexpr typename Pixel::Component colourFromFloat(float c) {
  if constexpr (Pixel::kIntegral) {
    return storeNarrow<typename Pixel::Component>(truncToInt(c * static_cast<float>(Pixel::kOne)));
  } else {
    return c;
  }
}

constexpr float lerp(float a, float b, float t) {
  return (b - a) * t + a;
}

constexpr std::int32_t lerp(std::int32_t a, std::int32_t b, float t) {
  return truncToInt(static_cast<float>(wrapSub(b, a)) * t + static_cast<float>(a));
}

}  // namespace vblur
