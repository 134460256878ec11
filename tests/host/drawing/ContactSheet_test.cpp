// The positions of panels on a sheet; each shows the render of a job with its settings.
#include "host/drawing/ContactSheet.h"

#include <cstring>

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/sequence/SequenceRenderer.h"
#include "tests/support/TestServer.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/Sheets.h"
#include "tests/support/host/SystemPainter.h"

namespace vblur::host {
namespace {

struct NoObserver : RenderObserver {
  void OnStart(std::int64_t, std::int32_t) override {}
  void OnWarning(std::int32_t, const std::string&) override {}
  void OnFrame(const FrameResult&) override {}
};

class ContactSheet : public testing::TestWithParam<std::int32_t> {
 protected:
  void Prepare(std::int32_t depth, std::int32_t width = 96, std::int32_t height = 54) {
    DrawTestChart(pictures_.input, depth, width, height, 0);
    MakeSecondClip(pictures_.input, pictures_.input2);
    pictures_.caption = "\"chart.png\"";
  }

  void Draw(const SheetPlan& plan) { DrawSheet(plan, pictures_, text_, MakeEffect, context_, sheet_); }

  // Renders the same pictures as a job.
  void RenderByJob(const PropertyStore& properties, EffectKind kind, double time, HostImage& into) {
    PictureWriter().Write(folder_.path() / "a.tif", pictures_.input, nullptr, true);
    PictureWriter().Write(folder_.path() / "b.tif", pictures_.input2, nullptr, true);
    Job job;
    job.folder = folder_.path();
    job.input.emplace().file = "a.tif";
    if (kind == EffectKind::Transition) job.input2.emplace().file = "b.tif";
    job.output.file = "out.tif";
    job.time = time;
    job.duration = 100.0;
    job.properties = properties;
    RenderOptions options;
    options.overwrite = true;
    NoObserver observer;
    ASSERT_EQ(RenderSequence(job, MakeEffect, options, context_, observer).code, ExitCode::Done);
    PictureReader().ReadColour(folder_.path() / "out.tif", pictures_.input.Depth(), into);
  }

  // A component of a picture as it is shown at a position of the sheet, over the checkerboard.
  static std::int32_t Looks(const HostImage& picture, std::int32_t x, std::int32_t line, std::size_t c, bool alpha) {
    const std::int32_t full = picture.Depth() == 8 ? 255 : 16384;
    const std::size_t at = 4 * static_cast<std::size_t>((picture.Height() - 1 - line) * picture.Width() + x);
    const auto shown = [&](std::size_t index) {
      return (std::clamp(Component(picture, index), 0, full) * 255 + full / 2) / full;
    };
    if (!alpha) return shown(at + c);
    const std::int32_t behind = (x / 8 + line / 8) % 2 == 0 ? 92 : 132;
    const std::int32_t opacity = shown(at + 3);
    return (shown(at + c) * opacity + behind * (255 - opacity) + 127) / 255;
  }

  void ExpectOnSheet(const HostImage& picture, SheetPoint at, bool alpha) const {
    std::int32_t wrong = 0;
    for (std::int32_t line = 0; line < picture.Height(); ++line) {
      for (std::int32_t x = 0; x < picture.Width(); ++x) {
        const std::int32_t row = sheet_.Height() - 1 - (at.y + line);
        for (std::size_t c = 0; c < 3; ++c) {
          const std::size_t index = 4 * static_cast<std::size_t>(row * sheet_.Width() + at.x + x) + c;
          wrong += Component(sheet_, index) != Looks(picture, x, line, c, alpha);
        }
      }
    }
    EXPECT_EQ(wrong, 0) << "of " << picture.Width() * picture.Height() * 3 << " components";
  }

  void ExpectPanel(SheetKind kind, std::size_t panel, const std::map<PropertyId, double>& settings) {
    const SheetPlan plan = PlanOf(kind);
    Draw(plan);
    PropertyStore properties;
    for (const auto& [id, value] : settings)
      properties.Set(PropertyOf(id).guid, value);
    HostImage rendered;
    RenderByJob(properties, plan.use, plan.panels[panel].time, rendered);
    ExpectOnSheet(rendered, LayOutSheet(plan, pictures_, text_).panels[panel], plan.showsAlpha);
  }

  ScratchFolder folder_;
  ExecuteContext context_;
  SystemPainter text_;
  SheetPictures pictures_;
  HostImage sheet_;
};

using enum PropertyId;

TEST_P(ContactSheet, ChannelsHoldWhatTheEffectRenders) {
  Prepare(GetParam());
  ExpectPanel(SheetKind::Channels, 8, {{Channels, 7.0}});
  ExpectOnSheet(pictures_.input, LayOutSheet(PlanOf(SheetKind::Channels), pictures_, text_).panels[0], true);
}

TEST_P(ContactSheet, MixBackHoldsWhatTheEffectRenders) {
  Prepare(GetParam());
  ExpectPanel(SheetKind::MixBack, 17, {{MixBack, 16.0}});
}

TEST_P(ContactSheet, EdgesHoldWhatTheEffectRenders) {
  Prepare(GetParam());
  const std::map<PropertyId, double> crop = {{Blur, 4.0},         {CropLeft, 30.0},   {CropRight, 70.0},
                                             {CropBottom, 30.0},  {CropTop, 70.0},    {CropColourR, 100.0},
                                             {CropColourG, 45.0}, {XEdgeMethod, 0.0}, {YEdgeMethod, 3.0}};
  ExpectPanel(SheetKind::Edges, 12, crop);
}

TEST_P(ContactSheet, SizesHoldWhatTheEffectRenders) {
  Prepare(GetParam());
  ExpectPanel(SheetKind::Sizes, 2, {{Blur, 2.5}});
  ExpectPanel(SheetKind::Sizes, 7, {{Blur, 250.0}});
}

TEST_P(ContactSheet, RampsHoldWhatTheEffectRenders) {
  Prepare(GetParam());
  ExpectPanel(SheetKind::Ramps, 9 + 5, {{Blur, 24.0}, {TransitionRamping, 1.0}});
}

INSTANTIATE_TEST_SUITE_P(Depths, ContactSheet, testing::Values(8, 16));

TEST_F(ContactSheet, PanelsAreInEvenRowsInsideTheSheet) {
  Prepare(8);
  for (std::size_t kind = 0; kind < kSheetNames.size(); ++kind) {
    const SheetPlan plan = PlanOf(static_cast<SheetKind>(kind));
    const SheetLayout layout = LayOutSheet(plan, pictures_, text_);
    ASSERT_EQ(layout.panels.size(), plan.panels.size());
    const std::int32_t across = layout.panels[1].x - layout.panels[0].x;
    const auto columns = static_cast<std::size_t>(plan.columns);
    const std::int32_t down = layout.panels[columns].y - layout.panels[0].y;
    EXPECT_GE(across, layout.cellWidth);
    EXPECT_GT(down, 54);
    for (std::size_t i = 0; i < layout.panels.size(); ++i) {
      EXPECT_EQ(layout.panels[i].x, layout.panels[0].x + static_cast<std::int32_t>(i % columns) * across);
      EXPECT_EQ(layout.panels[i].y, layout.panels[0].y + static_cast<std::int32_t>(i / columns) * down);
      EXPECT_LE(layout.panels[i].x + 96, layout.width);
      EXPECT_LE(layout.panels[i].y + down, layout.height);
    }
    Draw(plan);
    EXPECT_EQ(sheet_.Width(), layout.width);
    EXPECT_EQ(sheet_.Height(), layout.height);
  }
}

TEST_F(ContactSheet, EveryPanelHasALabelOfInk) {
  Prepare(8);
  const SheetPlan plan = PlanOf(SheetKind::Channels);
  const SheetLayout layout = LayOutSheet(plan, pictures_, text_);
  Draw(plan);
  for (const SheetPoint at : layout.panels) {
    std::int32_t brightest = 0;
    for (std::int32_t y = at.y + 54 + 4; y < at.y + 54 + 24; ++y) {
      for (std::int32_t x = at.x; x < at.x + 96; ++x) {
        const std::int32_t row = sheet_.Height() - 1 - y;
        brightest = std::max(brightest, Component(sheet_, 4 * static_cast<std::size_t>(row * sheet_.Width() + x)));
      }
    }
    EXPECT_GT(brightest, 200);
  }
}

TEST_F(ContactSheet, PanelsFitTheirRoomAndNeverGrow) {
  const SheetPlan plan = PlanOf(SheetKind::Channels);
  const auto expect = [&](std::int32_t width, std::int32_t height, std::int32_t toWidth, std::int32_t toHeight) {
    const SheetPoint size = PanelSize(plan, width, height);
    EXPECT_EQ(size.x, toWidth);
    EXPECT_EQ(size.y, toHeight);
  };
  expect(3840, 2160, plan.roomWidth, plan.roomWidth * 9 / 16);
  expect(1000, 4000, plan.roomHeight / 4, plan.roomHeight);
  expect(40, 30, 40, 30);
  expect(100000, 1, plan.roomWidth, 1);
}

TEST_F(ContactSheet, ScalingKeepsFlatColoursAtBothDepths) {
  for (const std::int32_t depth : {8, 16}) {
    HostImage flat;
    flat.Reset(depth, 4, 70, 50);
    const std::int32_t values[] = {depth == 8 ? 200 : 20000, 3, 0, depth == 8 ? 128 : -5};
    for (std::size_t i = 0; i < ComponentCount(flat); ++i)
      SetComponent(flat, i, values[i % 4]);
    HostImage small;
    ScalePicture(flat, 31, 17, small);
    EXPECT_EQ(small.Width(), 31);
    for (std::size_t i = 0; i < ComponentCount(small); ++i)
      ASSERT_EQ(Component(small, i), values[i % 4]) << i;
  }
}

TEST_F(ContactSheet, TheSecondClipIsRotatedAndItsColoursPermuted) {
  HostImage first;
  first.Reset(16, 4, 3, 2);
  for (std::size_t i = 0; i < ComponentCount(first); ++i)
    SetComponent(first, i, static_cast<std::int32_t>(i) * 100);
  HostImage second;
  MakeSecondClip(first, second);
  EXPECT_EQ(Components(second),
            (std::vector<std::int32_t>{2200, 2000, 2100, 2300, 1800, 1600, 1700, 1900, 1400, 1200, 1300, 1500,
                                       1000, 800,  900,  1100, 600,  400,  500,  700,  200,  0,    100,  300}));
}

TEST_F(ContactSheet, AnInterruptedSheetEndsAsInterrupted) {
  Prepare(8);
  context_.StopAfterPolls(40);
  const auto failure = CaughtFailure([&] { Draw(PlanOf(SheetKind::Channels)); });
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->Code(), ExitCode::Interrupted);
}

}  // namespace
}  // namespace vblur::host
