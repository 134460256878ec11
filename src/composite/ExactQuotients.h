// Quotients by constants without a division, truncated, exact over the stated domains. Vector code uses the constants;
// the functions state the same arithmetic in plain numbers, and tests compare them with the division over their
// domains.
#pragma once

#include <cmath>
#include <cstdint>

namespace vblur::exact {

// (v * kOver255) >> kOver255Shift is v / 255 for v in 0..65535. In 16-bit lanes it is a high multiply and a shift.
inline constexpr std::uint32_t kOver255 = 0x8081;
inline constexpr int kOver255Shift = 16 + 7;

constexpr std::uint32_t over255(std::uint32_t v) {
  return (v * kOver255) >> kOver255Shift;
}

// The least numbers above 1 / 255: a whole quotient does not fall short, and no other reaches the next integer, for
// v in -2^22..2^22 in float and for all 32-bit v in double.
inline constexpr float kOne255th = 0x1.010102p-8f;
inline constexpr double kWideOne255th = 0x1.0101010101011p-8;

constexpr std::int32_t smallOver255(std::int32_t v) {
  return static_cast<std::int32_t>(static_cast<float>(v) * kOne255th);
}

constexpr std::int32_t wideOver255(std::int32_t v) {
  return static_cast<std::int32_t>(static_cast<double>(v) * kWideOne255th);
}

// v / 32767 for v in 0..2^31 - 1: v = (v >> 15) * 32767 + (v >> 15) + (v & 32767), where the rest is at most 98302.
constexpr std::uint32_t over32767(std::uint32_t v) {
  const std::uint32_t sum = (v >> 15) + (v & 32767) + 1;
  return (v >> 15) + ((sum + (sum >> 15)) >> 15);
}

// The correctly rounded v / divisor for the divisors 255, 765 and 49152: FMA gives the remainder of the approximation
// exactly, which corrects it. Quotients below 2^-100 may differ in their last bits, and 0 in its sign.
inline float rounded(float v, float divisor) {
  const float reciprocal = 1.0f / divisor;
  const float quotient = v * reciprocal;
  return std::fma(std::fma(-quotient, divisor, v), reciprocal, quotient);
}

}  // namespace vblur::exact
