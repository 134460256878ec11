#include <algorithm>

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/files/PictureFile.h"
#include "tests/host/sequence/SequenceRendererTest.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"

namespace vblur::host {
namespace {

TEST_F(SequenceRenderer, RendersEveryFrameInOrder) {
  MakeInputs();
  job_.time = 2.5;
  job_.properties.Set(PropertyOf(PropertyId::Blur).guid, Curve{{{2.5, 0.0}, {7.5, 50.0}}, Interpolation::Linear});
  const auto summary = Render();
  EXPECT_EQ(summary.code, ExitCode::Done);
  EXPECT_EQ(summary.done, 6);
  EXPECT_EQ(seen_.announced, 6);
  ASSERT_EQ(seen_.results.size(), 6u);
  ASSERT_EQ(log_.size(), 6u);
  for (int i = 0; i < 6; ++i) {
    const auto at = static_cast<std::size_t>(i);
    EXPECT_EQ(seen_.results[at].frame, i + 1);
    EXPECT_EQ(seen_.results[at].status, FrameStatus::Done);
    EXPECT_EQ(log_[at].time, 2.5 + i);
    EXPECT_EQ(log_[at].blur, 10.0 * i);
    EXPECT_EQ(log_[at].userHeight, 6.0);
    EXPECT_EQ(ValueOf("out.00" + std::to_string(i + 1) + ".png"), 10 * (i + 1) + 1);
  }
  EXPECT_GT(summary.wallSeconds, 0.0);
  EXPECT_GT(summary.seconds.read, 0.0);
  EXPECT_GT(summary.seconds.write, 0.0);
}

// Each lane has its own clone, and a frame's result does not depend on its lane.
TEST_F(SequenceRenderer, FramesSideBySideAreReportedInOrder) {
  MakeInputs();
  for (const std::int32_t lanes : {2, 3, 20}) {
    options_.framesInFlight = lanes;
    options_.overwrite = true;
    seen_.results.clear();
    log_.clear();
    job_.properties.Set(PropertyOf(PropertyId::Blur).guid, Curve{{{0.0, 0.0}, {5.0, 50.0}}, Interpolation::Linear});
    EXPECT_EQ(Render().code, ExitCode::Done);
    EXPECT_EQ(seen_.sideBySide, std::min(lanes, 6));
    ASSERT_EQ(seen_.results.size(), 6u);
    for (int i = 0; i < 6; ++i) {
      EXPECT_EQ(seen_.results[static_cast<std::size_t>(i)].frame, i + 1);
      EXPECT_EQ(ValueOf("out.00" + std::to_string(i + 1) + ".png"), 10 * (i + 1) + 1);
    }
    ASSERT_EQ(log_.size(), 6u);
    std::sort(log_.begin(), log_.end(), [](const auto& a, const auto& b) { return a.time < b.time; });
    for (int i = 0; i < 6; ++i)
      EXPECT_EQ(log_[static_cast<std::size_t>(i)].blur, 10.0 * i) << "the clones have the curve";
  }
}

TEST_F(SequenceRenderer, FramesSideBySideBeforeAFailureAreFinished) {
  MakeInputs();
  folder_.Write("in.004.png", "no picture");
  options_.framesInFlight = 3;
  const auto summary = Render();
  EXPECT_EQ(summary.code, ExitCode::CannotRead);
  EXPECT_EQ(summary.done, 3);
  EXPECT_EQ(summary.failed, 1);
  EXPECT_TRUE(Exists("out.001.png") && Exists("out.002.png") && Exists("out.003.png"));
  EXPECT_FALSE(Exists("out.004.png"));
}

TEST_F(SequenceRenderer, AMissingFrameEndsItBeforeAnythingIsWritten) {
  MakeInputs();
  std::filesystem::remove(folder_.path() / "in.004.png");
  const auto failure = CaughtFailure([&] { Render(); });
  EXPECT_EQ(failure->Code(), ExitCode::CannotRead);
  EXPECT_EQ(failure->what(), (folder_.path() / "in.004.png").string() + ": cannot read: no such file (frame 4)");
  EXPECT_FALSE(Exists("out.001.png"));
}

TEST_F(SequenceRenderer, AMissingFrameCanBeSkipped) {
  MakeInputs();
  std::filesystem::remove(folder_.path() / "in.004.png");
  options_.onError = OnError::Skip;
  const auto summary = Render();
  EXPECT_EQ(summary.code, ExitCode::SomeFramesFailed);
  EXPECT_EQ(summary.done, 5);
  EXPECT_EQ(summary.failed, 1);
  EXPECT_EQ(seen_.results[3].status, FrameStatus::Failed);
  EXPECT_EQ(seen_.results[3].code, ExitCode::CannotRead);
  EXPECT_FALSE(Exists("out.004.png"));
  EXPECT_TRUE(Exists("out.006.png"));
}

TEST_F(SequenceRenderer, ADamagedFrameEndsItBehindTheFramesBefore) {
  MakeInputs();
  folder_.Write("in.004.png", "no picture");
  const auto summary = Render();
  EXPECT_EQ(summary.code, ExitCode::CannotRead);
  EXPECT_EQ(summary.done, 3);
  EXPECT_EQ(summary.failed, 1);
  EXPECT_EQ(seen_.results.size(), 4u);
  EXPECT_TRUE(Exists("out.003.png"));
  EXPECT_FALSE(Exists("out.004.png"));
  EXPECT_FALSE(Exists("out.005.png"));
}

TEST_F(SequenceRenderer, FramesUnderWayBehindAFailureAreDropped) {
  MakeInputs();
  const auto summary = Render([&](std::size_t frame) {
    if (frame == 1) std::filesystem::create_directory(folder_.path() / "out.002.png");
  });
  EXPECT_EQ(summary.code, ExitCode::CannotWrite);
  EXPECT_EQ(summary.done, 1);
  ASSERT_EQ(seen_.results.size(), 2u);
  EXPECT_NE(seen_.results[1].message.find("it is a folder"), std::string::npos);
  EXPECT_TRUE(Exists("out.001.png"));
  EXPECT_FALSE(Exists("out.003.png"));
}

TEST_F(SequenceRenderer, AFailedRenderIsAFailedFrame) {
  MakeInputs();
  options_.onError = OnError::Skip;
  const auto summary = Render({}, kOutOfMemory);
  EXPECT_EQ(summary.code, ExitCode::SomeFramesFailed);
  EXPECT_EQ(summary.failed, 6);
  EXPECT_NE(seen_.results[0].message.find("0x8007000e"), std::string::npos);
  EXPECT_FALSE(Exists("out.001.png"));
}

TEST_F(SequenceRenderer, AnInterruptedFrameLeavesNoTrace) {
  MakeInputs();
  const auto before = NamesIn(folder_.path());
  const auto summary = Render([&](std::size_t frame) {
    if (frame == 0) context_.Stop();
  });
  EXPECT_EQ(summary.code, ExitCode::Interrupted);
  EXPECT_EQ(summary.done, 0);
  EXPECT_TRUE(seen_.results.empty());
  EXPECT_EQ(NamesIn(folder_.path()), before);
}

// Stops behind a frame.
class StopBehind : public Collector {
 public:
  StopBehind(std::int64_t index, ExecuteContext& context) : index_(index), context_(context) {}

  void OnFrame(const FrameResult& result) override {
    Collector::OnFrame(result);
    if (result.index == index_) context_.Stop();
  }

 private:
  const std::int64_t index_;
  ExecuteContext& context_;
};

TEST_F(SequenceRenderer, AStopBehindTheLastFileChangesNothing) {
  MakeInputs();
  for (const std::int64_t index : {4, 5}) {
    ExecuteContext context;
    StopBehind observer(index, context);
    options_.overwrite = true;
    const auto summary = RenderSequence(
        job_, [&] { return ComPtr<TestEffect>::Own(new TestEffect(log_, {}, kOk)).As<IDSImageEffect>(); }, options_,
        context, observer);
    EXPECT_EQ(summary.code, index == 5 ? ExitCode::Done : ExitCode::Interrupted);
    EXPECT_EQ(summary.done, index + 1);
    EXPECT_EQ(observer.results.size(), static_cast<std::size_t>(index + 1));
  }
}

TEST_F(SequenceRenderer, ExistingFilesAreRefusedKeptOrReplaced) {
  MakeInputs();
  Make("out.005.png", 200);
  const auto failure = CaughtFailure([&] { Render(); });
  EXPECT_EQ(failure->Code(), ExitCode::CannotWrite);
  EXPECT_FALSE(Exists("out.001.png"));

  options_.skipExisting = true;
  auto summary = Render();
  EXPECT_EQ(summary.code, ExitCode::Done);
  EXPECT_EQ(summary.done, 5);
  EXPECT_EQ(summary.skipped, 1);
  EXPECT_EQ(seen_.results[4].status, FrameStatus::Skipped);
  EXPECT_EQ(ValueOf("out.005.png"), 200);

  options_.skipExisting = false;
  options_.overwrite = true;
  summary = Render();
  EXPECT_EQ(summary.done, 6);
  EXPECT_EQ(ValueOf("out.005.png"), 51);
}

TEST_F(SequenceRenderer, APictureWithoutANumberServesEveryFrame) {
  Make("still.png", 7);
  job_.input->file = "still.png";
  EXPECT_EQ(Render().done, 6);
  EXPECT_EQ(ValueOf("out.001.png"), 8);
  EXPECT_EQ(ValueOf("out.006.png"), 8);
}

TEST_F(SequenceRenderer, PicturesLieWhereTheirRecordsSay) {
  MakeInputs();
  job_.frames = FrameRange{1, 1, 1};
  job_.input->origin = {3, -4};
  Render();
  EXPECT_EQ(log_[0].inputOrigin.x, 3);
  EXPECT_EQ(log_[0].inputOrigin.y, -4);
  EXPECT_EQ(log_[0].inputPosition.y, -4.0);
  EXPECT_EQ(log_[0].inputSize.x, 8.0);
  job_.input->position = {{0.5, 1.5}};
  job_.input->size = {{80.0, 60.0}};
  options_.overwrite = true;
  Render();
  EXPECT_EQ(log_[1].inputPosition.x, 0.5);
  EXPECT_EQ(log_[1].inputSize.y, 60.0);
}

TEST_F(SequenceRenderer, TheOutputStartsFromItsInitialPicture) {
  MakeInputs();
  Make("before.png", 90);
  job_.frames = FrameRange{2, 2, 1};
  job_.output.initial = "before.png";
  job_.field = FieldChoice::First;
  ASSERT_EQ(Render().done, 1);
  HostImage out;
  PictureReader().ReadColour(folder_.path() / "out.002.png", 8, out);
  EXPECT_EQ(Component(out, 0), 21);
  EXPECT_EQ(Component(out, 8 * 4), 90);

  Make("before.png", 90, 9, 6);
  options_.overwrite = true;
  EXPECT_EQ(Render().code, ExitCode::WrongUsage);
  EXPECT_NE(seen_.results.back().message.find("9 x 6 pixels, expected the output's 8 x 6"), std::string::npos);
}

TEST_F(SequenceRenderer, BothFieldsGoIntoOnePicture) {
  MakeInputs();
  job_.frames = FrameRange{2, 2, 1};
  job_.field = FieldChoice::Both;
  ASSERT_EQ(Render().done, 1);
  ASSERT_EQ(log_.size(), 2u);
  EXPECT_EQ(log_[0].field, 1);
  EXPECT_EQ(log_[1].field, 2);
  HostImage out;
  PictureReader().ReadColour(folder_.path() / "out.002.png", 8, out);
  for (const std::int32_t component : Components(out))
    EXPECT_EQ(component, 21);
}

TEST_F(SequenceRenderer, MaskAndSecondInputAreHandedOver) {
  MakeInputs();
  Make("mask.png", 99, 3, 2);
  Make("two.png", 5);
  job_.mask.emplace().file = "mask.png";
  job_.input2.emplace().file = "two.png";
  EXPECT_EQ(Render().code, ExitCode::Done);
  EXPECT_EQ(log_[0].firstMaskAmount, 99);
  EXPECT_TRUE(log_[0].hasInput2);
}

TEST_F(SequenceRenderer, AGeneratorNeedsNoInput) {
  job_.input.reset();
  job_.kind = EffectKind::Generator;
  job_.output.width = 5;
  job_.output.height = 4;
  job_.depth = 8;
  EXPECT_EQ(Render().done, 6);
  EXPECT_EQ(log_[0].outputSize.x, 5);
  EXPECT_EQ(ValueOf("out.003.png"), 1);
}

TEST_F(SequenceRenderer, TheDepthIsThatOfTheInput) {
  HostImage image;
  image.Reset(16, 4, 4, 4);
  image.Clear();
  PictureWriter().Write(folder_.path() / "in.001.png", image, nullptr, true);
  job_.frames = FrameRange{1, 1, 1};
  Render();
  EXPECT_EQ(ReadPictureInfo(folder_.path() / "out.001.png").samples, SampleKind::Unsigned16);
}

// As two runs into one folder make them.
TEST_F(SequenceRenderer, AFrameThatAnotherRunFinishesMeanwhileIsSkipped) {
  MakeInputs();
  const auto finishBySomeoneElse = [this](std::size_t number) {
    if (number == 2) Make("out.003.png", 99);
  };
  EXPECT_EQ(Render(finishBySomeoneElse).code, ExitCode::CannotWrite);
  std::filesystem::remove(folder_.path() / "out.001.png");
  std::filesystem::remove(folder_.path() / "out.002.png");
  std::filesystem::remove(folder_.path() / "out.003.png");
  seen_.results.clear();
  log_.clear();
  options_.skipExisting = true;
  const RenderSummary summary = Render(finishBySomeoneElse);
  EXPECT_EQ(summary.code, ExitCode::Done);
  EXPECT_EQ(summary.done, 5);
  EXPECT_EQ(summary.skipped, 1);
  EXPECT_EQ(seen_.results[2].status, FrameStatus::Skipped);
  EXPECT_EQ(ValueOf("out.003.png"), 99);
  EXPECT_TRUE(Exists("out.006.png"));
}

}  // namespace
}  // namespace vblur::host
