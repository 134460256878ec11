// The place of a virtual operation among those of its class, from 0: callers that were compiled elsewhere rely on it.
// A destructor takes two places.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vblur::test {

#if defined(__x86_64__)
inline constexpr bool kSlotsAreKnown = true;

// A pointer to a virtual operation begins with 1 and the place of its entry in bytes.
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
