// Renders the upper left pixel of a picture and compares what is around it with the input.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/sequence/SequenceRenderer.h"
#include "tests/support/host/PlainFiles.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TestEffect.h"

namespace vblur::host {

class Unheard : public RenderObserver {
 public:
  void OnStart(std::int64_t, std::int32_t) override {}
  void OnWarning(std::int32_t, const std::string&) override {}
  void OnFrame(const FrameResult&) override {}
};

class KeptOutside : public testing::Test {
 protected:
  KeptOutside() {
    job_.folder = folder_.path();
    // The upper left pixel of the frame of three rows.
    job_.roi = Region{0, 2, 1, 1};
    options_.overwrite = options_.lossy = true;
  }

  void Render(const std::string& input, const std::string& output) {
    job_.input.emplace().file = input;
    job_.output.file = output;
    std::vector<RenderedFrame> log;
    const auto make = [&] { return ComPtr<TestEffect>::Own(new TestEffect(log)).As<IDSImageEffect>(); };
    Unheard unheard;
    EXPECT_EQ(RenderSequence(job_, make, options_, context_, unheard).done, 1);
  }

  // All but the first pixel, which the effect has changed. `samplesOf` gives all samples of a file, the top row first.
  template <typename SamplesOf>
  void ExpectKept(const std::string& input, const std::string& output, std::size_t channels, SamplesOf samplesOf) {
    const auto before = samplesOf(folder_.path() / input);
    Render(input, output);
    const auto after = samplesOf(folder_.path() / output);
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = channels; i < before.size(); ++i)
      EXPECT_EQ(after[i], before[i]) << input << " " << i;
    EXPECT_NE(after[0], before[0]);
  }

  ScratchFolder folder_;
  Job job_;
  RenderOptions options_;
  ExecuteContext context_;
};

template <typename Sample>
std::vector<Sample> Counting(std::size_t count) {
  std::vector<Sample> samples(count);
  for (std::size_t i = 0; i < count; ++i)
    samples[i] = static_cast<Sample>(30001 + 7 * i);
  return samples;
}

}  // namespace vblur::host
