// A tagged property value, as the host passes it.
#pragma once

#include <cstdint>
#include <limits>

#include "DsTypes.h"

namespace vblur {

struct DSVariant {
  DSValueType type = DSValueType::Float64;
  double number = 0.0;     // Float64
  std::int32_t whole = 0;  // Integer32, and Boolean32 as 0 or not

  static constexpr DSVariant Of(double value) { return {DSValueType::Float64, value, 0}; }
  static constexpr DSVariant Of(std::int32_t value) { return {DSValueType::Integer32, 0.0, value}; }

  constexpr double AsNumber() const { return type == DSValueType::Float64 ? number : static_cast<double>(whole); }
  // A double is truncated toward zero; the minimum for one out of range.
  constexpr std::int32_t AsWhole() const {
    if (type != DSValueType::Float64) return whole;
    constexpr double kLimit = 2147483648.0;
    if (!(number > -kLimit - 1.0 && number < kLimit)) return std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(number);
  }
};

}  // namespace vblur
