// How a processor stands: its window, and the order of its fields.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <vector>

namespace vblur::test {

// x1, y1, x2, y2.
using Ends = std::vector<std::int32_t>;

template <class Processor>
Ends windowOf(const Processor& processor) {
  return {processor.x1, processor.y1, processor.x2, processor.y2};
}

// Whether members stand in an object in this order.
template <class... Members>
bool standInOrder(const Members&... members) {
  const std::vector<const void*> places{&members...};
  return std::adjacent_find(places.begin(), places.end(), std::greater_equal<>()) == places.end();
}

}  // namespace vblur::test
