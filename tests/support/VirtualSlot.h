// The slot of a virtual operation in its class's table, from 0: callers compiled elsewhere rely on it. A destructor
// takes two slots.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vblur::test {

#if defined(__x86_64__)
inline constexpr bool kSlotsAreKnown = true;

// A pointer to a virtual member function begins with its table offset in bytes plus 1.
template <class Operation>
std::size_t virtualSlot(Operation operation) {
  std::uintptr_t place = 0;
  std::memcpy(&place, &operation, sizeof place);
  return (place - 1) / sizeof(void*);
}
#else
inline constexpr bool kSlotsAreKnown = false;

template <class Operation>
std::size_t virtualSlot(Operation) {
  return 0;
}
#endif

}  // namespace vblur::test
