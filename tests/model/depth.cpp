#include "depth.h"

#include <cstring>

#include "arithmetic.h"

namespace model {

float FloatOf(std::int32_t bits) {
  float value = 0.0f;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

std::int32_t BitsOf(float value) {
  std::int32_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

Range RangeOf(Depth depth) {
  switch (depth) {
    case Depth::Eight: return {0, 255, 255, 255};
    case Depth::Sixteen: return {-32768, 32767, 16384, 32767};
    case Depth::Wide:
    case Depth::Float: break;
  }
  return {kLowest, 2147483647, 2147483647, 2147483647};
}

std::int32_t Narrow(Depth depth, std::int32_t value) {
  switch (depth) {
    case Depth::Eight: return static_cast<std::uint8_t>(static_cast<std::uint32_t>(value));
    case Depth::Sixteen: return static_cast<std::int16_t>(static_cast<std::uint32_t>(value));
    case Depth::Wide:
    case Depth::Float: break;
  }
  return value;
}

float One(Depth depth) {
  return depth == Depth::Float ? 1.0f : static_cast<float>(RangeOf(depth).one);
}

float Load(Depth depth, std::int32_t component) {
  return depth == Depth::Float ? FloatOf(component) : static_cast<float>(component);
}

std::int32_t Store(Depth depth, float value) {
  if (depth == Depth::Float) return BitsOf(value);
  const Range range = RangeOf(depth);
  const float limited = Limit(value, static_cast<float>(range.min), static_cast<float>(range.max));
  return Narrow(depth, Truncate(limited));
}

float MixFloats(float a, float b, float amount) {
  if (amount >= 1.0f) return a;
  if (amount > 0.0f) return b + (a - b) * amount;
  return b;
}

std::int32_t MixWhole(Depth depth, std::int32_t a, std::int32_t b, std::int32_t amount) {
  if (depth == Depth::Float) return BitsOf(MixFloats(FloatOf(a), FloatOf(b), FloatOf(amount)));
  const std::int32_t product = Multiply(Subtract(a, b), amount);
  return Narrow(depth, Add(b, Divide(product, RangeOf(depth).top)));
}

std::int32_t AmountOf(Depth depth, float amount) {
  if (depth == Depth::Float) return BitsOf(amount);
  const std::int32_t top = RangeOf(depth).top;
  return Limit(Truncate(amount * static_cast<float>(top)), 0, top);
}

}  // namespace model
