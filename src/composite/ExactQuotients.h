// Quotients by constants without a division, toward zero and exact over the ranges that they tell: in plain
// numbers what the vector code of this folder does in its lanes.
#pragma once

#include <cmath>
#include <cstdint>

namespace vblur::exact {

// v * kOver255 >> kOver255Shift is v / 255 for 0 to 65535; the upper 16 bits are a high multiply.
inline constexpr std::uint32_t kOver255 = 0x8081;
inline constexpr int kOver255Shift = 16 + 7;

constexpr std::uint32_t over255(std::uint32_t v) {
  return (v * kOver255) >> kOver255Shift;
}

// The least numbers above 1 / 255. With these factors no quotient that is whole falls short, and none that is
// not reaches the next whole number as long as v lies in -2^22 to 2^22, or for doubles in 32 bits.
inline constexpr float kOne255th = 0x1.010102p-8f;
inline constexpr double kWideOne255th = 0x1.0101010101011p-8;

constexpr std::int32_t smallOver255(std::int32_t v) {
  return static_cast<std::int32_t>(static_cast<float>(v) * kOne255th);
}

constexpr std::int32_t wideOver255(std::int32_t v) {
  return static_cast<std::int32_t>(static_cast<double>(v) * kWideOne255th);
}

// v / 32767 for 0 to 2^31 - 1: v is (v >> 15) * 32767 and what the halves of v sum to, at most 98302.
constexpr std::uint32_t over32767(std::uint32_t v) {
  const std::uint32_t sum = (v >> 15) + (v & 32767) + 1;
  return (v >> 15) + ((sum + (sum >> 15)) >> 15);
}

// v / divisor as a division rounds it, for 255 and three times 255 or 16384: what the product with the reciprocal
// leaves over is known to the last bit, and corrects it. Quotients below 2^-100 may differ in their last bits, and 0
// in its sign.
inline float rounded(float v, float divisor) {
  const float reciprocal = 1.0f / divisor;
  const float quotient = v * reciprocal;
  return std::fma(std::fma(-quotient, divisor, v), reciprocal, quotient);
}

}  // namespace vblur::exact
