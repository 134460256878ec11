// The processor time that all threads of this process have taken, in seconds.
#pragma once

#include <ctime>

#ifdef _WIN32
// There std::clock is the time of day.
#include <windows.h>
#endif

namespace vblur::test {

inline double ProcessorSeconds() {
#ifdef _WIN32
  constexpr double kTicks = 1e7;
  FILETIME begin, end, system, user;
  ::GetProcessTimes(::GetCurrentProcess(), &begin, &end, &system, &user);
  const auto ticks = [](const FILETIME& time) { return time.dwHighDateTime * 4294967296.0 + time.dwLowDateTime; };
  return (ticks(system) + ticks(user)) / kTicks;
#else
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
#endif
}

}  // namespace vblur::test
