// The number formats of components, and how values are stored in them.
#pragma once

#include <cstdint>

namespace model {

enum class Depth {
  Eight,    ///< unsigned 8 bits
  Sixteen,  ///< signed 2.14 fixed point
  Wide,     ///< signed 32 bits: YUV and single-channel pictures between stages
};

struct Range {
  std::int32_t min;  ///< lowest value of the storage
  std::int32_t max;  ///< highest value of the storage
  std::int32_t one;  ///< 1.0 of a colour
  std::int32_t top;  ///< 1.0 of an amount or a mask
};

Range RangeOf(Depth depth);

/// Keeps the low bits of the format: a store without a clamp.
std::int32_t Narrow(Depth depth, std::int32_t value);

/// Clamps a float to the format, then truncates it toward zero.
std::int32_t Store(Depth depth, float value);

/// b, moved toward a by amount / top, the quotient truncating toward zero.
std::int32_t MixWhole(Depth depth, std::int32_t a, std::int32_t b, std::int32_t amount);

/// An amount in 0..1 on the scale of a mask.
std::int32_t AmountOf(Depth depth, float amount);

}  // namespace model
