// Viewer sessions with this build's effect.
#include "host/viewer/ViewSession.h"

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/files/PictureFile.h"
#include "host/properties/PropertyText.h"
#include "host/sequence/SequenceRenderer.h"
#include "platform/Content.h"
#include "tests/support/TestServer.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

class ViewSessionOfAFrame : public testing::Test {
 protected:
  ViewSessionOfAFrame() {
    HostImage image;
    image.Reset(8, 4, 48, 32);
    FillRandom(image, 0, 255, 3);
    for (const char* name : {"in.0001.png", "in.0002.png"}) {
      PictureWriter().Write(folder.path() / name, image, nullptr, true);
      FillRandom(image, 0, 255, 4);
    }
    job.folder = folder.path();
    job.input.emplace().file = "in.%04d.png";
    job.output.file = "out.%04d.png";
    job.frames = FrameRange{1, 2};
    job.time = 5.0;
    job.properties.Set(PropertyNamed("Blur").guid, Curve{{{5.0, 4.0}, {6.0, 12.0}}});
  }

  ViewSession Open(const ViewOptions& options = {}, std::int32_t frame = 1) {
    return ViewSession(job, frame, options, TestServer().Factory(), context, nullptr);
  }
  static PenEvent Event(const std::string& line) { return ParsePenScript(line, "test", "").front(); }

  // What a render writes, made opaque.
  std::vector<std::int32_t> Rendered(std::int32_t frame) {
    struct Silent : RenderObserver {
      void OnStart(std::int64_t, std::int32_t) override {}
      void OnWarning(std::int32_t, const std::string&) override {}
      void OnFrame(const FrameResult&) override {}
    } silent;
    RenderOptions options;
    options.overwrite = true;
    EXPECT_EQ(RenderSequence(job, TestServer().Factory(), options, context, silent).done, job.frames->Count());
    HostImage image;
    PictureReader().ReadColour(folder.path() / FramePattern("out.%04d.png").FileName(frame), 8, image);
    auto components = Components(image);
    for (std::size_t alpha = 3; alpha < components.size(); alpha += 4)
      components[alpha] = 255;
    return components;
  }
  static std::vector<std::int32_t> Painted(ViewSession& session) {
    HostImage image;
    session.Paint(image);
    return Components(image);
  }

  ScratchFolder folder;
  Job job;
  ExecuteContext context;
};

TEST_F(ViewSessionOfAFrame, ShowsWhatARenderWrites) {
  const auto first = Rendered(1);
  const auto second = Rendered(2);
  ASSERT_NE(first, second);
  {
    ViewSession session = Open();
    EXPECT_EQ(session.Geometry().SurfaceWidth(), 48);
    EXPECT_EQ(session.Geometry().SurfaceHeight(), 32);
    EXPECT_EQ(Painted(session), first);
    session.Apply(Event("time 6"));
    EXPECT_EQ(Painted(session), second) << "another time is another frame";
    session.Apply(Event("time 100"));
    EXPECT_EQ(Painted(session), second) << "behind the last frame it stays";
    session.Apply(Event("time 5"));
    EXPECT_EQ(Painted(session), first);
  }
  ViewSession session = Open({}, 2);
  EXPECT_EQ(Painted(session), second);
}

TEST_F(ViewSessionOfAFrame, RendersAgainOnlyWhenSomethingHasChanged) {
  ViewSession session = Open();
  EXPECT_EQ(session.RendersDone(), 0);
  const auto before = Painted(session);
  Painted(session);
  EXPECT_EQ(session.RendersDone(), 1);
  session.Apply(Event("move 3 3"));
  Painted(session);
  EXPECT_EQ(session.RendersDone(), 1);
  session.Apply(Event("set Blur 20"));
  session.Apply(Event("set Aspect -50"));
  EXPECT_EQ(session.RendersDone(), 1) << "at the next paint";
  const auto after = Painted(session);
  EXPECT_EQ(session.RendersDone(), 2);
  EXPECT_NE(after, before);
  job.properties = session.Properties();
  EXPECT_EQ(*job.properties.Find(PropertyNamed("Blur").guid), PropertyStore::Setting(20.0)) << "the curve has gone";
  EXPECT_EQ(after, Rendered(1));
}

TEST_F(ViewSessionOfAFrame, ReturnsTheCurrentProperties) {
  ViewSession session = Open();
  EXPECT_EQ(session.Properties(), job.properties);
  session.Apply(Event("set Crop Left 0:0, 4:50"));
  session.Apply(Event("set Channels Luminance"));
  const PropertyStore now = session.Properties();
  EXPECT_EQ(now.Settings().size(), 3u);
  EXPECT_EQ(now.ValueAt(PropertyNamed("Crop Left").guid, 2.0), 25.0);
  EXPECT_EQ(now.ValueAt(PropertyNamed("Channels").guid, 2.0), *FindEntry(PropertyNamed("Channels"), "Luminance"));
}

TEST_F(ViewSessionOfAFrame, IsOpenToTheEffectAsTheProject) {
  job.project = ProjectSizes{{96.0, 64.0}, {48.0, 32.0}};
  double size = 0.0;
  EXPECT_EQ(DSContentGetProperty(kProjectUserSizeX, size), kFailed);
  {
    ViewSession session = Open();
    EXPECT_EQ(DSContentGetProperty(kProjectUserSizeX, size), kOk);
    EXPECT_EQ(size, 96.0);
    EXPECT_EQ(session.Geometry().SurfaceWidth(), 96) << "a pixel of the picture is two of the frame";
    EXPECT_EQ(session.Geometry().Frame().worldPerPixel, 0.5);
  }
  EXPECT_EQ(DSContentGetProperty(kProjectUserSizeX, size), kFailed);
}

TEST_F(ViewSessionOfAFrame, HasTheSizeZoomAndPanThatItIsGiven) {
  job.properties = {};
  job.properties.Set(PropertyNamed("Blur").guid, 0.0);
  ViewOptions options;
  options.zoom = 2.0;
  options.pan = {4.0, -2.0};
  options.size = {20, 10};
  HostImage input;
  PictureReader().ReadColour(folder.path() / "in.0001.png", 8, input);
  ViewSession session = Open(options);
  HostImage view;
  session.Paint(view);
  ASSERT_EQ(view.Width(), 20);
  ASSERT_EQ(view.Height(), 10);
  const auto colours = [](const HostImage& image, std::int32_t x, std::int32_t y) {
    const std::byte* pixel = image.Row(y) + static_cast<std::size_t>(x) * 4;
    return std::vector<std::byte>(pixel, pixel + 3);
  };
  // The view is centred on (24 + 4, 16 - 2) of the frame.
  EXPECT_EQ(colours(view, 10, 5), colours(input, 28, 14));
  EXPECT_EQ(colours(view, 9, 4), colours(input, 27, 13));
  EXPECT_EQ(colours(view, 19, 9), colours(input, 32, 16));
  EXPECT_EQ(colours(view, 0, 0), colours(input, 23, 11));
}

TEST_F(ViewSessionOfAFrame, RefusesWhatCannotBeShown) {
  EXPECT_EQ(UsageFailureOf([&] { Open({}, 3); }), "frame 3 is not in the job: expected 1 to 2");
  job.input->file = "none.%04d.png";
  const auto missing = CaughtFailure([&] { Open(); });
  EXPECT_EQ(missing->Code(), ExitCode::CannotRead);
  job.input.reset();
  EXPECT_EQ(CaughtFailure([&] { Open(); })->Code(), ExitCode::WrongUsage);
}

TEST_F(ViewSessionOfAFrame, IsInterrupted) {
  ViewSession session = Open();
  context.Stop();
  HostImage image;
  EXPECT_EQ(CaughtFailure([&] { session.Paint(image); })->Code(), ExitCode::Interrupted);
}

}  // namespace
}  // namespace vblur::host
