// What a call writes to the standard error stream.
#pragma once

#include <string>

#include <gtest/gtest.h>

namespace vblur::test {

template <class Call>
std::string standardErrorOf(const Call& call) {
  ::testing::internal::CaptureStderr();
  call();
  return ::testing::internal::GetCapturedStderr();
}

}  // namespace vblur::test
