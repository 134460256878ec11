// A few words that each thread has of its own, 0 at first. The cross compiler for Windows keeps thread_local variables
// in memory that an unloaded library leaves behind.
#pragma once

#include <cstdint>

namespace vblur {

enum class HvThreadWord { Index, InsideRun, Account };
inline constexpr int kHvThreadWords = 3;

std::intptr_t HvGetThreadWord(HvThreadWord which);
void HvSetThreadWord(HvThreadWord which, std::intptr_t value);

// The calling thread's number among those that live; never 0.
std::uintptr_t HvThreadNumber();

}  // namespace vblur
