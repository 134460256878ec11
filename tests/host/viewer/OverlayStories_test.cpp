// User stories of the controls, through the host and this build's server, checked in properties, calls and pictures.
#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/files/PictureFile.h"
#include "host/pages/EffectPages.h"
#include "host/properties/PropertyText.h"
#include "host/viewer/ViewSession.h"
#include "platform/IDSProperties.h"
#include "tests/support/TestServer.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

using Lines = std::vector<std::string>;

struct Extent {
  std::int32_t left = 1 << 20;
  std::int32_t right = -1;
  std::int32_t bottom = 1 << 20;
  std::int32_t top = -1;
};

using Colour3 = std::array<int, 3>;
constexpr Colour3 kRing{179, 179, 0};
constexpr Colour3 kHighlight{255, 255, 255};
constexpr Colour3 kLeft{230, 230, 26};
constexpr Colour3 kRight{26, 230, 230};
constexpr Colour3 kBottom{230, 26, 230};
constexpr Colour3 kTop{255, 128, 51};

// The renderer rounds colours: allow 1.
bool IsColour(const std::byte* pixel, const Colour3& colour) {
  return std::abs(std::to_integer<int>(pixel[0]) - colour[0]) <= 1 &&
         std::abs(std::to_integer<int>(pixel[1]) - colour[1]) <= 1 &&
         std::abs(std::to_integer<int>(pixel[2]) - colour[2]) <= 1;
}

Extent ExtentOf(const HostImage& view, const Colour3& colour) {
  Extent extent;
  for (std::int32_t y = 0; y < view.Height(); ++y) {
    for (std::int32_t x = 0; x < view.Width(); ++x) {
      if (!IsColour(view.Row(y) + static_cast<std::size_t>(x) * 4, colour)) continue;
      extent.left = std::min(extent.left, x);
      extent.right = std::max(extent.right, x);
      extent.bottom = std::min(extent.bottom, y);
      extent.top = std::max(extent.top, y);
    }
  }
  return extent;
}

// A grey frame of 200 x 120 pixels.
class OverlayStories : public testing::Test {
 protected:
  static constexpr double kWidth = 200.0;
  static constexpr double kHeight = 120.0;

  OverlayStories() {
    HostImage image;
    image.Reset(8, 4, 200, 120);
    std::fill_n(image.Row(0), image.ByteCount(), std::byte{90});
    PictureWriter().Write(folder.path() / "in.png", image, nullptr, true);
    image.Reset(8, 4, 8, 8);
    image.Clear();
    PictureWriter().Write(folder.path() / "mask.png", image, nullptr, true);
    job.folder = folder.path();
    job.input.emplace().file = "in.png";
    job.output.file = "out.%04d.png";
    job.frames = FrameRange{0, 10};
    Set("Blur", 30.0);
  }

  void Set(std::string_view name, PropertyStore::Setting setting) {
    job.properties.Set(PropertyNamed(name).guid, std::move(setting));
  }

  void Open(const std::string& page, bool hides = false) {
    session.reset();
    session.emplace(job, 0, options, TestServer().Factory(), context, &trace);
    session->OpenPage(page, hides);
    lines.clear();
  }
  void Do(const std::string& script) {
    for (const PenEvent& event : ParsePenScript(script, "test", ""))
      session->Apply(event);
  }
  HostImage& Painted() {
    session->Paint(view);
    return view;
  }
  // The tool's writes, in order.
  Lines TakeWrites() {
    Lines writes;
    constexpr std::string_view kCall = "tool.SetAnimatedProperty";
    for (const std::string& line : lines) {
      if (line.rfind(kCall, 0) == 0) writes.push_back(line.substr(kCall.size(), line.find(" =") - kCall.size()));
    }
    lines.clear();
    return writes;
  }
  std::ptrdiff_t CountCalls(const std::string& call) const {
    return std::ranges::count_if(lines, [&](const std::string& line) { return line.rfind(call, 0) == 0; });
  }
  double Now(std::string_view name, double time = 0.0) const {
    return session->Properties().ValueAt(PropertyNamed(name).guid, time);
  }

  // Frame to surface coordinates: the tool's viewport is one pixel smaller than the surface.
  double AtX(double x) const {
    const WorldRectangle visible = session->Geometry().Visible();
    return (x - visible.x) * session->Geometry().Zoom() * (view.Width() - 1) / view.Width();
  }
  double AtY(double y) const {
    const WorldRectangle visible = session->Geometry().Visible();
    return (y - visible.y) * session->Geometry().Zoom() * (view.Height() - 1) / view.Height();
  }
  // Lines are two pixels wide.
  static void ExpectAt(std::int32_t pixel, double place) { EXPECT_NEAR(pixel + 0.5, place, 1.5); }

  void ExpectRing(double radiusX, double radiusY, const Colour3& colour = kRing) {
    const Extent extent = ExtentOf(Painted(), colour);
    ExpectAt(extent.left, AtX(kWidth * 0.5 - radiusX));
    ExpectAt(extent.right, AtX(kWidth * 0.5 + radiusX));
    ExpectAt(extent.bottom, AtY(kHeight * 0.5 - radiusY));
    ExpectAt(extent.top, AtY(kHeight * 0.5 + radiusY));
  }
  void ExpectCrop(double left, double right, double bottom, double top) {
    Painted();
    // The later line covers the earlier at a crossing: searches the whole length.
    const std::pair<Colour3, double> upright[] = {{kLeft, left}, {kRight, right}};
    for (const auto& [colour, place] : upright) {
      ExpectAt(ExtentOf(view, colour).left, AtX(place) - 0.5);
      ExpectAt(ExtentOf(view, colour).right, AtX(place) + 0.5);
    }
    const std::pair<Colour3, double> lying[] = {{kBottom, bottom}, {kTop, top}};
    for (const auto& [colour, place] : lying) {
      ExpectAt(ExtentOf(view, colour).bottom, AtY(place) - 0.5);
      ExpectAt(ExtentOf(view, colour).top, AtY(place) + 0.5);
    }
  }

  ScratchFolder folder;
  Job job;
  ViewOptions options;
  ExecuteContext context;
  Lines lines;
  CallTrace trace{[this](const std::string& line) { lines.push_back(line); }};
  std::optional<ViewSession> session;
  HostImage view;
};

TEST_F(OverlayStories, ADragOfTheRingWritesBlurOnceWhenThePenComesUp) {
  Open("FullBlurPPG");
  ExpectRing(30, 30);
  Do("move 130 60\ndown 130 60\nmove 135 60\nmove 140 70\nmove 150 60\nup 150 60");
  EXPECT_EQ(TakeWrites(), (Lines{"(Blur, 50, -1)"}));
  EXPECT_EQ(Now("Blur"), 50.0);
  // Hovered now: dashes in two colours at the same radius.
  ExpectRing(50, 50, kHighlight);
}

TEST_F(OverlayStories, NothingIsRenderedBeforeTheDragEnds) {
  Open("FullBlurPPG");
  Painted();
  const std::int32_t renders = session->RendersDone();
  for (const PenEvent& event : ParsePenScript("move 130 60\ndown 130 60\nmove 150 60\nup 150 60", "test", "")) {
    session->Apply(event);
    Painted();
    EXPECT_EQ(session->RendersDone(), renders + (event.kind == PenEvent::Kind::Up ? 1 : 0));
    if (event.kind != PenEvent::Kind::Up) {
      EXPECT_EQ(Now("Blur"), 30.0);
    }
  }
}

TEST_F(OverlayStories, AReleaseWithoutMovementWritesTheRadiusOnce) {
  Open("HelpPPG");
  Do("move 131 60\ndown 131 60\nup 131 60");
  EXPECT_EQ(TakeWrites(), (Lines{"(Blur, 30, -1)"}));
}

TEST_F(OverlayStories, OtherButtonsAndOtherPlacesMoveNothing) {
  Open("FullBlurPPG");
  Do("move 130 60\ndown 130 60 2\nmove 150 60\nup 150 60\nmove 100 60\ndown 100 60\nmove 150 60\nup 150 60");
  EXPECT_EQ(TakeWrites(), Lines{});
  EXPECT_EQ(Now("Blur"), 30.0);
}

TEST_F(OverlayStories, AnAnimatedBlurGetsAKeyAtTheTime) {
  Set("Blur", Curve{{{0.0, 20.0}, {10.0, 40.0}}});
  Open("transition");
  ExpectRing(20, 20);
  Do("time 5");
  ExpectRing(30, 30);
  Do("move 130 60\ndown 130 60\nmove 145 60\nup 145 60");
  EXPECT_EQ(TakeWrites(), (Lines{"(Blur, 45, -1)"}));
  const PropertyStore properties = session->Properties();
  EXPECT_EQ(std::get<Curve>(*properties.Find(PropertyNamed("Blur").guid)).keys,
            (std::vector<CurveKey>{{0.0, 20.0}, {5.0, 45.0}, {10.0, 40.0}}));
}

TEST_F(OverlayStories, TheRingFollowsItsProperties) {
  Open("TransitionBlurPPG");
  Do("set Blur 50");
  ExpectRing(50, 50);
  Do("set Aspect -50");
  ExpectRing(25, 50);
  Do("set Aspect 50");
  ExpectRing(50, 25);
  Do("set Aspect 0\nset Blur 0:10,10:50\ntime 5");
  ExpectRing(30, 30);
}

TEST_F(OverlayStories, FollowTheFrameAtEveryZoomAndPan) {
  for (const double zoom : {0.5, 1.0, 3.0}) {
    for (const std::array<double, 2> pan : {std::array{0.0, 0.0}, std::array{12.0, -7.0}}) {
      options.zoom = zoom;
      options.pan = pan;
      options.size = {480, 300};
      Open("FullBlurPPG");
      ExpectRing(30, 30);
      Open("crop");
      Do("set Crop Left 20\nset Crop Right 70\nset Crop Bottom 25\nset Crop Top 80");
      ExpectCrop(40, 140, 30, 96);
      // Pen positions are frame pixels at every zoom and pan.
      lines.clear();
      Do("move 40 50\ndown 40 50\nmove 50 50\nup 50 50");
      EXPECT_EQ(TakeWrites(), (Lines{"(Crop Left, 25, -1)"})) << zoom;
    }
  }
}

TEST_F(OverlayStories, ADragOfACropCornerWritesTwoProperties) {
  Open("crop");
  ExpectCrop(0, 200, 0, 120);
  Do("move 200 120\ndown 200 120\nmove 190 100\nmove 180 90\nup 180 90");
  EXPECT_EQ(TakeWrites(), (Lines{"(Crop Right, 90, -1)", "(Crop Top, 75, -1)"}));
  EXPECT_EQ(Now("Crop Right"), 90.0);
  EXPECT_EQ(Now("Crop Top"), 75.0);
  EXPECT_EQ(Now("Crop Left"), 0.0);
  Do("move 100 60");
  ExpectCrop(0, 180, 0, 90);
}

TEST_F(OverlayStories, NoCropPageDividesByAnEmptyRectangle) {
  const Job whole = job;
  const std::pair<void (*)(Job&), const char*> refusals[] = {
      {[](Job& wrong) { wrong.projectUnreadable = true; }, "crop page: expected a project whose sizes can be read"},
      {[](Job& wrong) { wrong.input->size.emplace(); }, "input/size: expected a width and a height above 0, found 0"},
      {[](Job& wrong) {
         wrong.input->size = {1e-60, 1e-60};
       },
       "input/size: expected a width and a height above 0, found 1e-60"},
      {[](Job& wrong) {
         wrong.kind = EffectKind::Generator;
         wrong.input.reset();
         wrong.output.width = 200;
         wrong.output.height = 120;
       },
       "crop page: expected a filter or a transition, found use 3"},
      {[](Job& wrong) {
         wrong.input->position = {1e12, 0.0};
       },
       "crop page: expected an input with a width and a height in the project's units"},
      {[](Job& wrong) { wrong.project.emplace(); },
       "crop page: expected an input with a width and a height in the project's units"},
  };
  for (const auto& [spoil, message] : refusals) {
    job = whole;
    spoil(job);
    EXPECT_EQ(UsageFailureOf([&] {
                Open("crop");
                Do("move 1 1\ndown 1 1\nmove 10 10\nup 10 10");
              }),
              message);
    EXPECT_EQ(TakeWrites(), Lines{}) << message;
  }
}

TEST_F(OverlayStories, AnAnimatedCropMovesWithTheTime) {
  Set("Crop Left", Curve{{{0.0, 10.0}, {10.0, 30.0}}});
  Open("crop");
  ExpectCrop(20, 200, 0, 120);
  Do("time 5");
  ExpectCrop(40, 200, 0, 120);
  Do("time 10");
  ExpectCrop(60, 200, 0, 120);
}

TEST_F(OverlayStories, OnlyThePagesOwnControlIsSeen) {
  const auto isSeen = [&](const Colour3& colour) { return ExtentOf(view, colour).right >= 0; };
  Open("FullBlurPPG");
  Painted();
  EXPECT_TRUE(isSeen(kRing));
  EXPECT_FALSE(isSeen(kLeft));
  Open("crop");
  Painted();
  EXPECT_FALSE(isSeen(kRing));
  EXPECT_TRUE(isSeen(kTop));
}

TEST_F(OverlayStories, HiddenTheyAreNeitherSeenNorTouched) {
  Open("FullBlurPPG", true);
  EXPECT_LT(ExtentOf(Painted(), kRing).right, 0);
  lines.clear();
  Do("move 130 60\ndown 130 60\nmove 150 60\nup 150 60");
  EXPECT_EQ(TakeWrites(), Lines{});
  EXPECT_EQ(Now("Blur"), 30.0);
}

TEST_F(OverlayStories, APaintedEffectHasNone) {
  job.mask.emplace().file = "mask.png";
  Open("FullBlurPPG");
  EXPECT_LT(ExtentOf(Painted(), kRing).right, 0);
  EXPECT_EQ(CountCalls("tool."), 0);
}

TEST_F(OverlayStories, FitAProjectWhosePixelsAreNotWorldUnits) {
  // A frame pixel is 2 world units; the picture fills the frame.
  job.project = ProjectSizes{{kWidth, kHeight}, {kWidth * 2.0, kHeight * 2.0}};
  for (ImageRecord* record : {&*job.input, static_cast<ImageRecord*>(&job.output)})
    record->size = {kWidth * 2.0, kHeight * 2.0};
  Open("crop");
  Painted();
  EXPECT_EQ(view.Width(), 200);
  Do("set Crop Right 50");
  ASSERT_GE(ExtentOf(Painted(), kRight).right, 0);
  EXPECT_NEAR(ExtentOf(view, kRight).right, 100.0, 1.5);
  lines.clear();
  Do("move 100 30\ndown 100 30\nmove 150 30\nup 150 30");
  EXPECT_EQ(TakeWrites(), (Lines{"(Crop Right, 75, -1)"}));
}

// Several pages over one viewer, and every order of destruction.
class OverlayStoriesAlone : public testing::Test {
 protected:
  OverlayStoriesAlone() {
    tagDSImgFxInfo use;
    use.record = kDSImgFxInfoRecord;
    use.family = families::kFilter;
    EXPECT_EQ(effect->GetImageEffectInfo(&use), kOk);
    viewer->Edit(properties.get());
    history.emplace(*properties);
    pages.emplace(*properties, *history);
  }
  ~OverlayStoriesAlone() override { viewer->Edit(nullptr); }

  // Pages and history hold the effect.
  void Forget() {
    properties.reset();
    effect.reset();
  }

  ComPtr<Viewer> viewer = Viewer::Make();
  ComPtr<IDSImageEffect> effect = MakeEffect();
  ComPtr<IDSProperties> properties = effect.As<IDSProperties>();
  std::optional<UndoHistory> history;
  std::optional<EffectPages> pages;
};

TEST_F(OverlayStoriesAlone, StayUntilTheLastPageCloses) {
  EXPECT_EQ(viewer->ToolCount(), 0u);
  pages->Show("FullBlurPPG");
  pages->Show("crop");
  EXPECT_EQ(viewer->ToolCount(), 1u);
  pages->Close("FullBlurPPG");
  EXPECT_EQ(viewer->ToolCount(), 1u);
  pages->Close("crop");
  EXPECT_EQ(viewer->ToolCount(), 0u);
  pages->Close("crop");
  pages->Show("crop");
  EXPECT_EQ(viewer->ToolCount(), 1u) << "and again";
}

TEST_F(OverlayStoriesAlone, KeepTheEffectWhileOpen) {
  pages->Show("FullBlurPPG");
  Forget();
  EXPECT_EQ(viewer->ToolCount(), 1u);
  viewer->PenDown({1, 10.0, 10.0});
  viewer->PenUp({1, 10.0, 10.0});
  viewer->SetTime(3.0);
  viewer->Edit(nullptr);
  pages.reset();
  EXPECT_EQ(viewer->ToolCount(), 0u);
}

TEST_F(OverlayStoriesAlone, OutliveTheViewersTools) {
  pages->Show("crop");
  viewer->Clear();
  properties->PutValue(PropertyNamed("Crop Left").guid, DSVariant::Of(10.0));
  pages->Show("FullBlurPPG");
  pages->CloseAll();
}

TEST_F(OverlayStoriesAlone, OutliveTheViewer) {
  pages->Show("FullBlurPPG");
  viewer->Clear();
  viewer->Edit(nullptr);
  viewer = Viewer::Make();
  properties->PutValue(PropertyNamed("Blur").guid, DSVariant::Of(10.0));
  Forget();
}

TEST_F(OverlayStoriesAlone, HaveNoToolOnAViewerThatDoesNotShowTheEffect) {
  viewer->Edit(nullptr);
  pages->Show("FullBlurPPG");
  EXPECT_EQ(viewer->ToolCount(), 0u);
}

}  // namespace
}  // namespace vblur::host
