// The sRGB transfer function and its inverse, by operations that vector code and plain code do alike.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

namespace vblur::host {

// The largest half float, which is the most that a picture of floats carries.
inline constexpr float kMostLight = 65504.0f;

template <int N>
inline double Power(double y) {
  if constexpr (N == 1) {
    return y;
  } else if constexpr (N % 2 == 0) {
    return Power<N / 2>(y * y);
  } else {
    return Power<N - 1>(y) * y;
  }
}

// x^(-1/N) for a positive x of a float's range, by Newton's iteration from the float whose bits are about those of the
// root: its error is below 2^-4, and each step squares it, times (N + 1) / 2.
template <int N>
inline double InverseRoot(double x) {
  constexpr double kOneBits = 0x3F800000;
  const auto bits = static_cast<double>(std::bit_cast<std::int32_t>(static_cast<float>(x)));
  const auto guess = static_cast<std::int32_t>(kOneBits + (kOneBits - bits) * (1.0 / N));
  double y = static_cast<double>(std::bit_cast<float>(guess));
  for (int step = 0; step < 5; ++step)
    y *= (N + 1.0) / N - x * (1.0 / N) * Power<N>(y);
  return y;
}

// Of 0 and above. Both forms are computed, of which one is taken: vector code has no branches.
struct Decoding {
  static double Of(double x) {
    const double low = x * (1.0 / 12.92);
    const double base = (x + 0.055) * (1.0 / 1.055);
    // To the power of 12/5.
    const double high = Power<3>(base * InverseRoot<5>(base));
    return x <= 0.04045 ? low : high;
  }
  static float Limited(float value) {
    return value < -kMostLight ? -kMostLight : value > kMostLight ? kMostLight : value;
  }
};

struct Encoding {
  static double Of(double x) {
    const double low = x * 12.92;
    // To the power of 5/12.
    const double high = 1.055 * (x * Power<7>(InverseRoot<12>(x))) - 0.055;
    return x <= 0.0031308 ? low : high;
  }
  static float Limited(float value) { return value; }
};

// Mirrored below 0.
template <class Curve>
inline float SentThrough(float value) {
  const auto x = static_cast<double>(value);
  return Curve::Limited(static_cast<float>(std::copysign(Curve::Of(std::fabs(x)), x)));
}

}  // namespace vblur::host
