// Runs whose output may be a picture that they read.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/files/PictureReport.h"
#include "host/sequence/SequenceRenderer.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TestEffect.h"

namespace vblur::host {

class Messages : public RenderObserver {
 public:
  void OnStart(std::int64_t, std::int32_t) override {}
  void OnWarning(std::int32_t, const std::string&) override {}
  void OnFrame(const FrameResult& result) override { failure = result.message; }

  std::string failure;
};

class ReplacedInputs : public testing::Test {
 protected:
  ReplacedInputs() { options_.overwrite = true; }

  RenderSummary Render(const std::string& input, const std::string& output) {
    job_.folder = folder_.path();
    job_.input.emplace().file = input;
    job_.output.file = output;
    const auto make = [&] { return ComPtr<TestEffect>::Own(new TestEffect(log_)).As<IDSImageEffect>(); };
    return RenderSequence(job_, make, options_, context_, seen_);
  }

  // The file and why it is kept.
  void ExpectKept(const std::string& name, const std::string& lost) {
    const std::string before = Bytes(folder_.path() / name);
    const auto failure = CaughtFailure([&] { Render(name, name); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->what(),
              (folder_.path() / name).string() + ": cannot write: it is read by this run and would lose " + lost);
    EXPECT_EQ(failure->Kind(), FailureKind::HoldsLess);
    EXPECT_EQ(Bytes(folder_.path() / name), before);
  }

  ScratchFolder folder_;
  Job job_;
  RenderOptions options_;
  ExecuteContext context_;
  Messages seen_;
  std::vector<RenderedFrame> log_;
};

}  // namespace vblur::host
