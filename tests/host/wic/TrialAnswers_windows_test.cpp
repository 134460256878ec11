#include "host/wic/TrialAnswers.h"

#include <stdexcept>

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

TEST(TrialAnswers, AreKeptAndFailuresAreNot) {
  TrialAnswers<int, bool> answers;
  int trials = 0;
  const auto trial = [&] {
    if (++trials < 3) throw std::runtime_error("not now");
    return true;
  };
  EXPECT_THROW(answers.Of(1, trial), std::runtime_error);
  EXPECT_THROW(answers.Of(1, trial), std::runtime_error);
  EXPECT_TRUE(answers.Of(1, trial));
  EXPECT_TRUE(answers.Of(1, trial));
  EXPECT_EQ(trials, 3);
  EXPECT_FALSE(answers.Of(2, [] { return false; }));
}

}  // namespace
}  // namespace vblur::host
