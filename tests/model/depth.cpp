#include "depth.h"

#include "arithmetic.h"

namespace model {

Range RangeOf(Depth depth) {
  switch (depth) {
    case Depth::Eight: return {0, 255, 255, 255};
    case Depth::Sixteen: return {-32768, 32767, 16384, 32767};
    case Depth::Wide: break;
  }
  return {kLowest, 2147483647, 2147483647, 2147483647};
}

std::int32_t Narrow(Depth depth, std::int32_t value) {
  switch (depth) {
    case Depth::Eight: return static_cast<std::uint8_t>(static_cast<std::uint32_t>(value));
    case Depth::Sixteen: return static_cast<std::int16_t>(static_cast<std::uint32_t>(value));
    case Depth::Wide: break;
  }
  return value;
}

std::int32_t Store(Depth depth, float value) {
  const Range range = RangeOf(depth);
  const float limited = Limit(value, static_cast<float>(range.min), static_cast<float>(range.max));
  return Narrow(depth, Truncate(limited));
}

std::int32_t MixWhole(Depth depth, std::int32_t a, std::int32_t b, std::int32_t amount) {
  const std::int32_t product = Multiply(Subtract(a, b), amount);
  return Narrow(depth, Add(b, Divide(product, RangeOf(depth).top)));
}

std::int32_t AmountOf(Depth depth, float amount) {
  const std::int32_t top = RangeOf(depth).top;
  return Limit(Truncate(amount * static_cast<float>(top)), 0, top);
}

}  // namespace model
