// Runs one function at once on every thread of a standing pool.
//
// A run calls the function once for each index 0 to HvThreadCount() - 1, index 0 on the calling
// thread, and returns when all have finished. Runs are served one after the other: a second thread
// that asks waits for the first run to end. The function divides the work itself, by its index and the count.
#pragma once

#include <cstdint>

namespace vblur {

using HvWord = std::intptr_t;
// Any function of up to six words; called with as many arguments as the run was given.
using HvThreadFunction = void (*)();

inline constexpr int kMaxThreadArguments = 6;

// What all threads of a run share. A function that was given no arguments is called with it.
struct HvCallBlock {
  std::int32_t count = 0;
  HvThreadFunction function = nullptr;
  HvWord arguments[kMaxThreadArguments] = {};
};

// The arguments are HvWords; those beyond six are dropped. The function must not start another run; a nested
// run goes through all indices on its own thread.
void HvThreadRun(HvThreadFunction function, std::int32_t argumentCount, ...);

// The threads of a run: the processors that the machine reports, or what was set.
std::int32_t HvThreadCount();

// The index of the calling thread within its run, 0 outside a run.
std::int32_t HvThreadIndex();

// Sets the number of threads, at least 1; 0 restores what the machine reports. Waits for a run in
// progress.
void HvSetThreadCount(std::int32_t count);

// Ends the pool's threads; the next run starts new ones. Waits for a run in progress. Before a library is unloaded.
void HvStopThreads();

}  // namespace vblur
