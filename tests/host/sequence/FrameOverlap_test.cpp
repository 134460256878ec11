#include "host/sequence/FrameOverlap.h"

#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/base/Failure.h"

namespace vblur::host {
namespace {

constexpr std::int32_t kRows = 30;
constexpr std::int32_t kBand = 10;

// A frame whose output rows are those of its input plus one: each stage waits for the one before.
class FrameOverlap : public testing::Test {
 protected:
  FrameOverlap() {
    stages_.inputHeight = stages_.outputHeight = [] { return kRows; };
    stages_.read = [this](const FrameBuffers::Watch& watch) {
      watch.onReady();
      for (std::int32_t row = 0; row < kRows; ++row) {
        input_[static_cast<std::size_t>(row)] = row;
        watch.onRows(row + 1);
      }
    };
    stages_.render = [this](const BandSteps& steps) {
      for (std::int32_t bottom = kRows - kBand; bottom >= 0; bottom -= kBand) {
        steps.before(bottom);
        for (std::int32_t row = kRows - kBand - bottom; row < kRows - bottom; ++row)
          output_[static_cast<std::size_t>(row)] = input_[static_cast<std::size_t>(row)] + 1;
        EXPECT_TRUE(steps.after(bottom));
      }
    };
    stages_.write = [this](const RowProgress& rendered) {
      for (std::int32_t row = 0; row < kRows; ++row) {
        rendered.WaitFor(row + 1);
        file_.push_back(output_[static_cast<std::size_t>(row)]);
      }
    };
  }

  std::string FailureOf() {
    try {
      RunOverlapped(stages_, seconds_);
    } catch (const Failure& failure) {
      return failure.what();
    } catch (const FileInterrupted&) {
      return "interrupted";
    }
    return "";
  }

  OverlapStages stages_;
  StageTimes seconds_;
  std::vector<int> input_ = std::vector<int>(kRows, -9);
  std::vector<int> output_ = std::vector<int>(kRows, -9);
  std::vector<int> file_;
};

[[noreturn]] void FailOf(const std::string& what) {
  throw Failure(ExitCode::CannotRead, what);
}

TEST_F(FrameOverlap, EachRowPassesAllStages) {
  for (int again = 0; again < 200; ++again) {
    file_.clear();
    ASSERT_TRUE(RunOverlapped(stages_, seconds_));
    ASSERT_EQ(file_.size(), std::size_t{kRows});
    for (std::int32_t row = 0; row < kRows; ++row)
      ASSERT_EQ(file_[static_cast<std::size_t>(row)], row + 1);
  }
  EXPECT_GT(seconds_.read, 0.0);
  EXPECT_GE(seconds_.render, 0.0);
  EXPECT_GE(seconds_.write, 0.0);
}

TEST_F(FrameOverlap, AFrameWhoseRowsAllHaveToBeThereIsOnlyRead) {
  stages_.read = [](const FrameBuffers::Watch&) {};
  EXPECT_FALSE(RunOverlapped(stages_, seconds_));
  EXPECT_EQ(output_[0], -9);
  EXPECT_TRUE(file_.empty());
}

TEST_F(FrameOverlap, ReadingThatFailsFirstEndsTheFrame) {
  stages_.read = [](const FrameBuffers::Watch&) { FailOf("no such file"); };
  EXPECT_EQ(FailureOf(), "no such file");
  EXPECT_TRUE(file_.empty());
}

TEST_F(FrameOverlap, ReadingThatFailsAmongTheRowsEndsAllStages) {
  stages_.read = [](const FrameBuffers::Watch& watch) {
    watch.onReady();
    watch.onRows(kBand);
    FailOf("cut short");
  };
  EXPECT_EQ(FailureOf(), "cut short");
  EXPECT_EQ(file_.size(), std::size_t{kBand});
}

// None waits for rows that do not come.
TEST_F(FrameOverlap, AStageThatEndsBeforeItsLastRowInterruptsTheFrame) {
  const auto render = stages_.render;
  stages_.render = [](const BandSteps& steps) { steps.after(kRows - kBand); };
  EXPECT_EQ(FailureOf(), "interrupted");
  EXPECT_EQ(file_.size(), std::size_t{kBand});
  stages_.render = render;
  stages_.read = [](const FrameBuffers::Watch& watch) {
    watch.onReady();
    watch.onRows(kBand);
  };
  EXPECT_EQ(FailureOf(), "interrupted");
}

TEST_F(FrameOverlap, EachPictureHasItsOwnHeight) {
  for (const std::int32_t outputRows : {kBand, 3 * kRows}) {
    stages_.outputHeight = [=] { return outputRows; };
    std::int32_t seen = 0;
    stages_.render = [&](const BandSteps& steps) {
      steps.before(0);
      seen = input_.back();
      steps.after(0);
    };
    stages_.write = [&](const RowProgress& rendered) { rendered.WaitFor(outputRows); };
    input_.back() = -9;
    EXPECT_EQ(FailureOf(), "");
    EXPECT_EQ(seen, kRows - 1) << "all of the input is there";
  }
}

TEST_F(FrameOverlap, ARenderThatFailsEndsWriting) {
  stages_.render = [](const BandSteps& steps) {
    steps.before(kRows - kBand);
    FailOf("cannot render");
  };
  EXPECT_EQ(FailureOf(), "cannot render");
  EXPECT_TRUE(file_.empty());
}

TEST_F(FrameOverlap, WritingThatFailsIsTold) {
  stages_.write = [](const RowProgress&) { FailOf("disk full"); };
  EXPECT_EQ(FailureOf(), "disk full");
  EXPECT_EQ(output_.back(), kRows);
}

TEST_F(FrameOverlap, TheFirstStageThatFailsIsTold) {
  stages_.read = [](const FrameBuffers::Watch& watch) {
    watch.onReady();
    FailOf("cut short");
  };
  stages_.write = [](const RowProgress&) { FailOf("disk full"); };
  EXPECT_EQ(FailureOf(), "cut short");
}

TEST_F(FrameOverlap, AnInterruptionOfReadingInterruptsTheFrame) {
  stages_.read = [](const FrameBuffers::Watch& watch) {
    watch.onReady();
    throw FileInterrupted{};
  };
  EXPECT_EQ(FailureOf(), "interrupted");
}

}  // namespace
}  // namespace vblur::host
