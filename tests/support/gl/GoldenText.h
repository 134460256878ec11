// Golden texts: compared exactly with a file. VBLUR_UPDATE_GOLDEN=1 in the environment rewrites the file instead;
// review it and commit it with the change.
#pragma once

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/gl/GlRecording.h"

namespace vblur::test {

inline ::testing::AssertionResult matchesGoldenText(const std::string& path, const std::string& have) {
  const char* update = std::getenv("VBLUR_UPDATE_GOLDEN");
  if (update != nullptr && std::string(update) == "1") {
    std::ofstream out(path);
    if (out << have && out.flush()) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << path << " cannot be written";
  }
  std::ifstream in(path);
  if (!in) return ::testing::AssertionFailure() << path << " cannot be read; VBLUR_UPDATE_GOLDEN=1 makes it";
  std::ostringstream want;
  want << in.rdbuf();
  if (want.str() == have) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << path << ": " << firstDifference(have, want.str())
                                       << "rewrite with VBLUR_UPDATE_GOLDEN=1 if this is as it should be";
}

}  // namespace vblur::test
