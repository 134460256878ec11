// What death tests expect of a program that aborts: a signal, or on Windows an exit code.
#pragma once

#include <csignal>

#include <gtest/gtest.h>

namespace vblur::test {

#ifdef _WIN32
inline const ::testing::ExitedWithCode kAborted(3);
#else
inline const ::testing::KilledBySignal kAborted(SIGABRT);
#endif

}  // namespace vblur::test
