// The initialisation of function-local statics, for the compiler, by the system's locks. The compiler's own leaves a
// thread word of the system, two handles and some memory behind each time that the library is unloaded.
#include <atomic>
#include <cstdint>

#include <windows.h>

namespace {

// What a guard holds: the compiler's code reads the first byte, the rest is free.
struct Guard {
  std::uint8_t done;
  std::uint8_t running;
};

Guard* In(std::int64_t* guard) {
  return reinterpret_cast<Guard*>(guard);
}

SRWLOCK guards = SRWLOCK_INIT;
CONDITION_VARIABLE ended = CONDITION_VARIABLE_INIT;

void End(Guard* guard, bool done) {
  AcquireSRWLockExclusive(&guards);
  guard->running = 0;
  if (done) std::atomic_ref(guard->done).store(1, std::memory_order_release);
  ReleaseSRWLockExclusive(&guards);
  WakeAllConditionVariable(&ended);
}

}  // namespace

extern "C" {

// 1: the caller initialises, and calls one of the others; 0: it is done.
int __cxa_guard_acquire(std::int64_t* given) {
  Guard* const guard = In(given);
  if (std::atomic_ref(guard->done).load(std::memory_order_acquire) != 0) return 0;
  AcquireSRWLockExclusive(&guards);
  while (guard->running != 0)
    SleepConditionVariableSRW(&ended, &guards, INFINITE, 0);
  const bool begins = guard->done == 0;
  if (begins) guard->running = 1;
  ReleaseSRWLockExclusive(&guards);
  return begins ? 1 : 0;
}

void __cxa_guard_release(std::int64_t* guard) {
  End(In(guard), true);
}

// The initialisation threw: the next caller begins again.
void __cxa_guard_abort(std::int64_t* guard) {
  End(In(guard), false);
}

}  // extern "C"
