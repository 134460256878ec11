// The number formats of components, and how values are stored in them.
#pragma once

#include <cstdint>

namespace model {

enum class Depth {
  Eight,    ///< unsigned 8 bits
  Sixteen,  ///< signed 2.14 fixed point
  Wide,     ///< signed 32 bits: YUV and single-channel pictures between stages
  Float,    ///< 32-bit floats; a component is held as the float's bits
};

float FloatOf(std::int32_t bits);
std::int32_t BitsOf(float value);

/// Not of floats.
struct Range {
  std::int32_t min;  ///< lowest value of the storage
  std::int32_t max;  ///< highest value of the storage
  std::int32_t one;  ///< 1.0 of a colour
  std::int32_t top;  ///< 1.0 of an amount or a mask
};

Range RangeOf(Depth depth);

/// Keeps the low bits of the format: a store without a clamp.
std::int32_t Narrow(Depth depth, std::int32_t value);

/// 1.0 of a colour in a picture of the depth.
float One(Depth depth);

/// The value of a component, on the scale of its depth.
float Load(Depth depth, std::int32_t component);

/// Clamps to the format, then truncates toward zero. Floats stay as they are.
std::int32_t Store(Depth depth, float value);

/// b, moved toward a by an amount that is limited to 0..1: b itself at 0 or NaN, a itself at 1.
float MixFloats(float a, float b, float amount);

/// b, moved toward a by a component of a mask: by amount / top, the quotient truncating toward zero.
std::int32_t MixWhole(Depth depth, std::int32_t a, std::int32_t b, std::int32_t amount);

/// An amount in 0..1 as a component of a mask.
std::int32_t AmountOf(Depth depth, float amount);

}  // namespace model
