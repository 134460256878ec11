#include "host/sequence/Progress.h"

#include <cstdio>
#include <sstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

class ProgressOutput : public testing::Test {
 protected:
  ProgressOutput() : stream_(std::fopen(File().string().c_str(), "wb")) {}
  ~ProgressOutput() override { std::fclose(stream_); }

  std::filesystem::path File() const { return folder_.path() / "printed"; }

  // So far.
  std::string Printed() {
    std::fflush(stream_);
    return Bytes(File());
  }

  std::string Run(ProgressStyle style) {
    Progress progress(stream_, style);
    progress.OnStart(3, 2);
    FrameResult result;
    result.frame = 7;
    result.file = "a\nb.png";
    result.seconds.render = 0.25;
    progress.OnFrame(result);
    result.frame = 8;
    result.status = FrameStatus::Skipped;
    progress.OnFrame(result);
    result.frame = 9;
    result.status = FrameStatus::Failed;
    result.code = ExitCode::CannotRead;
    result.message = "x.png: cannot read: no such file";
    progress.OnFrame(result);
    RenderSummary summary;
    summary.done = 1;
    summary.code = ExitCode::SomeFramesFailed;
    summary.beyond = beyond_;
    progress.Finish(summary);
    return Printed();
  }

  BeyondRange beyond_;
  ScratchFolder folder_;
  std::FILE* stream_;
};

TEST_F(ProgressOutput, WithoutProgressFailuresRemain) {
  EXPECT_EQ(Run(ProgressStyle::None), "vblur: x.png: cannot read: no such file\n");
}

TEST_F(ProgressOutput, WhatFloatsDoNotCarryIsToldOnceAtTheEnd) {
  beyond_ = {.count = 2, .lowest = -1e5f, .highest = 7e4f, .notNumbers = 3};
  EXPECT_EQ(Run(ProgressStyle::None),
            "vblur: x.png: cannot read: no such file\n"
            "vblur: input: 2 components from -100000 to 70000 clipped to -65504 to 65504, which 32 bits carry; "
            "3 components without a value (NaN) read as 0\n");
}

TEST_F(ProgressOutput, JsonIsAnObjectALine) {
  beyond_ = {.count = 2, .lowest = -1e5f, .highest = 7e4f, .notNumbers = 3};
  std::istringstream lines(Run(ProgressStyle::Json));
  std::vector<nlohmann::json> objects;
  for (std::string line; std::getline(lines, line);)
    objects.push_back(nlohmann::json::parse(line));
  ASSERT_EQ(objects.size(), 5u);
  EXPECT_EQ(objects[0]["event"], "start");
  EXPECT_EQ(objects[0]["frames"], 3);
  EXPECT_EQ(objects[1]["event"], "frame");
  EXPECT_EQ(objects[1]["frame"], 7);
  EXPECT_EQ(objects[1]["file"], "a\nb.png");
  EXPECT_EQ(objects[1]["status"], "done");
  EXPECT_EQ(objects[1]["seconds"]["render"], 0.25);
  EXPECT_FALSE(objects[1].contains("message"));
  EXPECT_EQ(objects[2]["status"], "skipped");
  EXPECT_EQ(objects[3]["status"], "failed");
  EXPECT_EQ(objects[3]["exit"], 3);
  EXPECT_EQ(objects[3]["message"], "x.png: cannot read: no such file");
  EXPECT_EQ(objects[4]["event"], "end");
  EXPECT_EQ(objects[4]["exit"], 1);
  EXPECT_EQ(objects[4]["limited"], 2);
  EXPECT_EQ(objects[4]["notNumbers"], 3);
}

TEST_F(ProgressOutput, ABarIsDrawnRarelyAndTakenAway) {
  Progress progress(stream_, ProgressStyle::Bar);
  progress.OnStart(5000, 1);
  FrameResult result;
  for (int frame = 1; frame <= 5000; ++frame) {
    result.frame = frame;
    progress.OnFrame(result);
  }
  RenderSummary summary;
  summary.done = 5000;
  progress.Finish(summary);
  const std::string text = Printed();
  EXPECT_NE(text.find("] 1/5000  frame 1  "), std::string::npos);
  EXPECT_NE(text.find("[########################] 5000/5000  frame 5000  "), std::string::npos);
  EXPECT_NE(text.find("\r\033[K5000 done"), std::string::npos);
  // The bar is redrawn at most ten times a second; the bound allows for slow machines.
  EXPECT_LT(std::count(text.begin(), text.end(), '['), 2000);
}

TEST_F(ProgressOutput, OnePictureEndsWithALine) {
  const auto last = [&](FrameStatus status) {
    Progress progress(stream_, ProgressStyle::Bar);
    progress.OnStart(1, 1);
    FrameResult result;
    result.file = "a.png";
    result.status = status;
    progress.OnFrame(result);
    RenderSummary summary;
    summary.done = status == FrameStatus::Done ? 1 : 0;
    summary.skipped = status == FrameStatus::Skipped ? 1 : 0;
    summary.failed = status == FrameStatus::Failed ? 1 : 0;
    summary.wallSeconds = 1.25;
    progress.Finish(summary);
    const std::string text = Printed();
    return text.substr(text.rfind('\r'));
  };
  EXPECT_EQ(last(FrameStatus::Done), "\r\033[Ka.png: done in 1.25 s\n");
  EXPECT_EQ(last(FrameStatus::Skipped), "\r\033[Ka.png: exists, skipped\n");
  EXPECT_EQ(last(FrameStatus::Failed), "\r\033[K") << "its message has been printed";
}

TEST(ProgressDuration, CountsUpToWholeSeconds) {
  EXPECT_EQ(FormatDuration(0.0), "0:00");
  EXPECT_EQ(FormatDuration(6.2), "0:07");
  EXPECT_EQ(FormatDuration(760.0), "12:40");
  EXPECT_EQ(FormatDuration(3723.0), "1:02:03");
}

}  // namespace
}  // namespace vblur::host
