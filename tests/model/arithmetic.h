// Integer arithmetic of the pixel path: 32 bits that wrap, and one rule for each conversion.
#pragma once

#include <cstdint>
#include <limits>

namespace model {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

/// Keeps the low 32 bits.
inline std::int32_t Wrap(std::int64_t value) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(value)));
}

inline std::int32_t Add(std::int32_t a, std::int32_t b) {
  return Wrap(std::int64_t{a} + b);
}
inline std::int32_t Subtract(std::int32_t a, std::int32_t b) {
  return Wrap(std::int64_t{a} - b);
}
inline std::int32_t Multiply(std::int32_t a, std::int32_t b) {
  return Wrap(std::int64_t{a} * b);
}

/// Truncating quotient. One that does not fit is the lowest number.
inline std::int32_t Divide(std::int32_t a, std::int32_t b) {
  if (b == 0 || (a == kLowest && b == -1)) return kLowest;
  return a / b;
}

/// Truncates toward zero. What does not fit, NaN included, is the lowest number.
/// A 32-bit float passes through the 64-bit argument unchanged.
inline std::int32_t Truncate(double value) {
  if (!(value > -2147483649.0 && value < 2147483648.0)) return kLowest;
  return static_cast<std::int32_t>(value);
}

/// A clamp by two comparisons: NaN stays NaN.
template <class Number>
Number Limit(Number value, Number low, Number high) {
  if (low > value) return low;
  if (value > high) return high;
  return value;
}

}  // namespace model
