#include "box.h"

#include <cstddef>

#include "arithmetic.h"

namespace model {
namespace {

std::int32_t Normalised(std::int32_t sum, const Box& box) {
  return Add(Multiply(sum, box.scale), 8192) >> 14;
}

/// The sum of the two end taps, weighted and truncated.
std::int32_t EndTaps(const LineSource& source, std::int64_t x, const Box& box) {
  const std::int64_t distance = std::int64_t{box.r} + 1;
  return Multiply(Add(source(x - distance), source(x + distance)), box.frac) >> 14;
}

/// At each position the sum of the taps around it.
std::vector<std::int32_t> SumsOfTaps(const LineSource& source, std::int64_t begin, std::int64_t end, const Box& box) {
  const std::int64_t first = begin - box.r;
  // upTo[i] is the sum of all values before first + i: any run of taps is a difference of two.
  std::vector<std::int64_t> upTo{0};
  for (std::int64_t x = first; x < end + box.r; ++x)
    upTo.push_back(upTo.back() + source(x));
  std::vector<std::int32_t> result;
  for (std::int64_t x = begin; x < end; ++x) {
    const auto low = static_cast<std::size_t>(x - box.r - first);
    const auto high = static_cast<std::size_t>(x + box.r + 1 - first);
    std::int32_t sum = Wrap(upTo[high] - upTo[low]);
    if (box.d != 0) sum = Add(sum, EndTaps(source, x, box));
    result.push_back(Normalised(sum, box));
  }
  return result;
}

/// The running sum: each step adds one value and subtracts one.
std::vector<std::int32_t> CarriedSums(const LineSource& source, std::int64_t begin, std::int64_t end, const Box& box) {
  std::vector<std::int32_t> result;
  std::int32_t carried = 0;
  for (std::int64_t x = begin - box.r - box.d; x <= begin + box.r; ++x)
    carried = Add(carried, source(x));
  for (std::int64_t x = begin; x < end; ++x) {
    const std::int32_t in = source(x + box.r + 1);
    const std::int32_t out = source(x - box.r - box.d);
    if (box.d == 0) {
      result.push_back(Normalised(carried, box));
      carried = Subtract(Add(carried, in), out);
      continue;
    }
    const std::int32_t inner = Subtract(carried, out);
    const std::int32_t ends = Multiply(Add(in, out), box.frac) >> 14;
    result.push_back(Normalised(Add(inner, ends), box));
    carried = Add(inner, in);
  }
  return result;
}

}  // namespace

Box MakeBox(float radius) {
  Box box{};
  box.r = Truncate(radius);
  const float fraction = radius - static_cast<float>(box.r);
  box.d = fraction != 0.0f ? 1 : 0;
  const float taps = static_cast<float>(Add(Multiply(2, box.r), 1));
  box.scale = Truncate((1.0f / (taps + fraction * 2.0f)) * 16384.0f);
  box.frac = Truncate(fraction * 16384.0f);
  return box;
}

std::int64_t MarginOf(const Box& box, int boxes) {
  return (std::int64_t{box.d} + box.r + 1) * boxes;
}

std::vector<std::int32_t> BoxLine(const LineSource& source, std::int64_t begin, std::int64_t end, const Box& box) {
  if (begin >= end) return {};
  return box.r < 0 ? CarriedSums(source, begin, end, box) : SumsOfTaps(source, begin, end, box);
}

}  // namespace model
