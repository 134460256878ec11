// Jobs on pictures whose data window is not their display window.
#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/hosted/CoordMan.h"
#include "host/hosted/JobFrame.h"
#include "host/sequence/JobPictures.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TestEffect.h"
#include "tests/support/host/WindowedPictures.h"

namespace vblur::host {
namespace {

constexpr FileWindow kFrame{0, 0, 6, 5};
// Two pixels more on the left and one more below.
constexpr FileWindow kOverscan{-2, 0, 8, 6};

class WindowedJobs : public testing::Test {
 protected:
  WindowedJobs() {
    job_.folder = folder_.path();
    job_.input.emplace().file = "in.%d.exr";
    job_.output.file = "out.%d.exr";
  }

  void Make(const std::string& name, const FileWindow& data, const FileWindow& display = kFrame) {
    WriteWindowed(folder_.path() / name, data, display, {"R", "G", "B"});
  }

  RenderedFrame Render(std::int32_t frame = 1) {
    if (!buffers_) {
      pictures_.emplace(job_);
      buffers_.emplace(*pictures_, StopTest{});
      effect_.SetUp(job_, coordMan_, context_);
    }
    buffers_->Prepare(frame, 8);
    EXPECT_EQ(RenderFields(effect_, job_, buffers_->Pictures(), 0.0, context_, [] {}), kOk);
    return log_.back();
  }

  ScratchFolder folder_;
  Job job_;
  std::optional<JobPictures> pictures_;
  std::optional<FrameBuffers> buffers_;
  std::vector<RenderedFrame> log_;
  CoordMan coordMan_{{1.0, 1.0}};
  ExecuteContext context_;
  HostedEffect effect_{ComPtr<TestEffect>::Own(new TestEffect(log_)).As<IDSImageEffect>()};
};

void ExpectPair(DSPixelPair pair, std::int32_t x, std::int32_t y) {
  EXPECT_EQ(pair.x, x);
  EXPECT_EQ(pair.y, y);
}

void ExpectPair(DSWorldPair pair, double x, double y) {
  EXPECT_EQ(pair.x, x);
  EXPECT_EQ(pair.y, y);
}

TEST_F(WindowedJobs, TheFrameLiesWhereTheRecordSays) {
  Make("in.1.exr", kOverscan);
  job_.input->origin = {10, 20};
  const RenderedFrame frame = Render();
  ExpectPair(frame.inputOrigin, 8, 19);
  ExpectPair(frame.inputPosition, 8.0, 19.0);
  ExpectPair(frame.inputSize, 8.0, 6.0);
}

TEST_F(WindowedJobs, APositionAndASizeAreThoseOfTheFrame) {
  Make("in.1.exr", kOverscan);
  job_.input->position = {{100.0, 200.0}};
  job_.input->size = {{12.0, 50.0}};
  const RenderedFrame frame = Render();
  ExpectPair(frame.inputOrigin, -2, -1);
  ExpectPair(frame.inputPosition, 96.0, 190.0);
  ExpectPair(frame.inputSize, 16.0, 60.0);
}

TEST_F(WindowedJobs, TheOutputIsTheSamePartOfItsFrame) {
  Make("in.1.exr", kOverscan);
  job_.output.origin = {3, 4};
  const RenderedFrame frame = Render();
  const HostImage& output = buffers_->Output();
  ExpectPair(output.HostOrigin(), 1, 3);
  ExpectPair(output.Size(), 8, 6);
  ExpectPair(output.FrameSize(), 6, 5);
  EXPECT_EQ(frame.userHeight, 5.0) << "the project has the size of the frame";
}

TEST_F(WindowedJobs, AnOutputOfItsOwnSizeIsAWholeFrame) {
  Make("in.1.exr", kOverscan);
  job_.output.width = 7;
  Render();
  const HostImage& output = buffers_->Output();
  ExpectPair(output.HostOrigin(), 0, -1);
  ExpectPair(output.Size(), 7, 6);
  ExpectPair(output.FrameSize(), 7, 5);
}

// The effect places a mask from the input's lower left corner.
TEST_F(WindowedJobs, AMaskLiesFrameOverFrame) {
  Make("in.1.exr", kOverscan);
  Make("mask.exr", {1, 1, 2, 2});
  job_.mask.emplace().file = "mask.exr";
  job_.mask->offset = {5, 7};
  ExpectPair(Render().maskOffset, 7, 8);
}

TEST_F(WindowedJobs, ARegionIsCountedFromTheFrame) {
  Make("in.1.exr", kOverscan);
  Make("in.2.exr", kFrame);
  Make("in.3.exr", kOverscan);
  job_.roi = Region{1, 2, 3, 2};
  ExpectPair(Render(1).regionCorner, 3, 3);
  ExpectPair(Render(2).regionCorner, 1, 2);
  ExpectPair(Render(3).regionCorner, 3, 3);
}

TEST_F(WindowedJobs, AnInitialPictureLiesFrameOverFrame) {
  Make("in.1.exr", kOverscan);
  HostImage start;
  start.Reset(8, 4, 6, 5);
  for (std::size_t i = 0; i < ComponentCount(start); ++i)
    SetComponent(start, i, static_cast<std::int32_t>(i) + 1);
  PictureWriter().Write(folder_.path() / "start.png", start, nullptr, false);
  job_.output.initial = "start.png";
  pictures_.emplace(job_);
  buffers_.emplace(*pictures_, StopTest{});
  buffers_->Prepare(1, 8);
  const HostImage& output = buffers_->Output();
  const auto at = [&](std::int32_t x, std::int32_t y) {
    return Component(output, static_cast<std::size_t>(y * 8 + x) * 4);
  };
  EXPECT_EQ(at(2, 0), 0);
  EXPECT_EQ(at(1, 1), 0);
  EXPECT_EQ(at(2, 1), 1);
  EXPECT_EQ(at(7, 5), 117);
}

TEST_F(WindowedJobs, FramesOfOtherSizesAreTold) {
  Make("in.1.exr", kOverscan);
  Make("mask.exr", {0, 0, 2, 2}, {0, 0, 4, 4});
  Make("second.exr", kFrame, {0, 0, 7, 5});
  job_.input2.emplace().file = "second.exr";
  job_.mask.emplace().file = "mask.exr";
  Render();
  EXPECT_EQ(
      buffers_->Warnings(),
      (std::vector<std::string>{
          "input2: its frame of 7 x 5 pixels lies on the input's lower left corner, whose frame has 6 x 5 pixels",
          "mask: its frame of 4 x 4 pixels lies on the input's lower left corner, whose frame has 6 x 5 pixels"}));
  job_.input2->origin = {1, 0};
  job_.mask->offset = {0, 1};
  EXPECT_EQ(buffers_->Warnings(), std::vector<std::string>());
}

}  // namespace
}  // namespace vblur::host
