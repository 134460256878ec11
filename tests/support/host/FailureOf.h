// The failure of a call, for tests of messages and exit codes.
#pragma once

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "host/base/Failure.h"

namespace vblur::host {

// The Failure that the call throws; none, and a failed test, when it throws nothing.
template <typename Call>
std::optional<Failure> CaughtFailure(Call call) {
  try {
    call();
  } catch (const Failure& failure) {
    EXPECT_EQ(std::string(failure.what()).find('\n'), std::string::npos) << "a failure is one line";
    return failure;
  }
  ADD_FAILURE() << "expected a Failure, none was thrown";
  return std::nullopt;
}

// The message of a wrong usage.
template <typename Call>
std::string UsageFailureOf(Call call) {
  const auto failure = CaughtFailure(call);
  if (!failure) return {};
  EXPECT_EQ(failure->Code(), ExitCode::WrongUsage);
  return failure->what();
}

}  // namespace vblur::host
