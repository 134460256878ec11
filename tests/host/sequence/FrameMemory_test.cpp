#include "host/sequence/FrameMemory.h"

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/hosted/EffectServer.h"
#include "host/sequence/SequenceRenderer.h"
#include "properties/PropertyTable.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

// Keeps the memory of the last frame.
class MemoryObserver : public RenderObserver {
 public:
  void OnStart(std::int64_t, std::int32_t) override {}
  void OnWarning(std::int32_t, const std::string&) override {}
  void OnFrame(const FrameResult& result) override { memory = result.memory; }

  std::optional<FrameMemoryFacts> memory;
};

class FrameMemory : public testing::Test {
 protected:
  static constexpr std::int32_t kWidth = 512;
  static constexpr std::int32_t kHeight = 384;

  FrameMemory() {
    HostImage image;
    image.Reset(8, 4, kWidth, kHeight);
    FillRandom(image, 0, 255, 1);
    for (const char* name : {"in.png", "to.png"})
      PictureWriter().Write(folder_.path() / name, image, nullptr, true);
    options_.overwrite = true;
    options_.threads = 1;
  }

  Job JobOf(std::size_t channels, bool isTransition, std::int32_t depth) const {
    Job job;
    job.folder = folder_.path();
    job.input.emplace().file = "in.png";
    job.output.file = "out.png";
    job.depth = depth;
    if (isTransition) {
      job.input2.emplace().file = "to.png";
      job.duration = 10.0;
      job.time = 4.0;
    }
    job.properties.Set(PropertyOf(PropertyId::Channels).guid, static_cast<double>(channels));
    job.properties.Set(PropertyOf(PropertyId::Blur).guid, 12.0);
    return job;
  }

  void ExpectEnough(const Job& job) {
    // A thread's lines and tables, which are less than the picture that a wrong count would lack.
    constexpr std::int64_t kLines = 128 << 10;
    static_assert(kLines < kWidth * kHeight * 4);
    const JobPictures pictures(job);
    const auto estimate = EstimateFrameMemory(job, pictures, 0, {*job.depth, job.time});
    MemoryObserver seen;
    ExecuteContext context;
    ASSERT_EQ(RenderSequence(job, server_.Factory(), options_, context, seen).code, ExitCode::Done);
    ASSERT_TRUE(seen.memory);
    EXPECT_GE(estimate.pictures, seen.memory->pictures);
    EXPECT_GE(estimate.own + kLines, seen.memory->own);
  }

  ScratchFolder folder_;
  const EffectServer server_{DefaultServerFile()};
  RenderOptions options_;
};

TEST_F(FrameMemory, IsWhatAFrameTakesAtMost) {
  const auto& entries = PropertyOf(PropertyId::Channels).entries;
  for (std::size_t channels = 0; channels < entries.size(); ++channels) {
    for (const bool isTransition : {false, true}) {
      for (const std::int32_t depth : {8, 16}) {
        SCOPED_TRACE(std::string(entries[channels]) + (isTransition ? ", a transition, " : ", a filter, ") +
                     std::to_string(depth) + " bits");
        ExpectEnough(JobOf(channels, isTransition, depth));
      }
    }
  }
}

}  // namespace
}  // namespace vblur::host
