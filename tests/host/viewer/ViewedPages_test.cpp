// Stories of property pages with a viewer: the ring and the pages change the same properties.
#include <algorithm>

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/files/PictureFile.h"
#include "host/pages/CheckBoxControl.h"
#include "host/pages/ColourChipControl.h"
#include "host/pages/NumberControl.h"
#include "host/properties/PropertyText.h"
#include "host/viewer/ViewSession.h"
#include "tests/support/TestServer.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

// A grey frame of 200 x 120 pixels, whose ring has the radius of Blur.
class ViewedPages : public testing::Test {
 protected:
  static constexpr std::int32_t kMiddleX = 100;
  static constexpr std::int32_t kMiddleY = 60;

  ViewedPages() {
    HostImage image;
    image.Reset(8, 4, 2 * kMiddleX, 2 * kMiddleY);
    std::fill_n(image.Row(0), image.ByteCount(), std::byte{90});
    for (const char* name : {"in.png", "second.png"})
      PictureWriter().Write(folder.path() / name, image, nullptr, true);
    job.folder = folder.path();
    job.input.emplace().file = "in.png";
    job.output.file = "out.%04d.png";
    job.frames = FrameRange{0, 10};
    job.properties.Set(PropertyNamed("Blur").guid, 30.0);
  }

  void Open() {
    session.reset();
    session.emplace(job, 0, ViewOptions{}, TestServer().Factory(), context, nullptr);
  }
  void Open(const std::string& page) {
    Open();
    session->OpenPage(page, false);
  }
  void Do(const std::string& script) {
    for (const PenEvent& event : ParsePenScript(script, "story.pen", ""))
      session->Apply(event);
  }
  double Now(std::string_view name, double time = 0.0) const {
    return session->Properties().ValueAt(PropertyNamed(name).guid, time);
  }
  // Whether the ring of this radius is seen at its right end.
  bool SeesRing(std::int32_t radius) {
    session->Paint(view);
    for (std::int32_t x = kMiddleX + radius - 2; x <= kMiddleX + radius + 1; ++x) {
      const std::byte* const pixel = view.Row(kMiddleY) + static_cast<std::size_t>(x) * 4;
      if (pixel[0] != std::byte{90} && std::to_integer<int>(pixel[2]) < 90) return true;
    }
    return false;
  }
  const NumberControl& Number(const std::string& page, std::string_view name) {
    OpenedPage& opened = *session->Pages().Find(page);
    for (const auto& item : opened.dialog->Items()) {
      const auto* const number = dynamic_cast<const NumberControl*>(item.get());
      if (number != nullptr && opened.NameOf(*item) == name) return *number;
    }
    throw Failure(ExitCode::SomeFramesFailed, "no control " + std::string(name));
  }
  UndoHistory& History() { return session->History(); }

  ScratchFolder folder;
  Job job;
  ExecuteContext context;
  std::optional<ViewSession> session;
  HostImage view;
};

constexpr const char* kDrag = "move 130 60\ndown 130 60\nmove 150 60\nup 150 60";

TEST_F(ViewedPages, ADragOfTheRingIsOneStepThatPageAndRingFollow) {
  Open("FullBlurPPG");
  EXPECT_FALSE(History().CanUndo()) << "the job's properties are no change";
  Do(kDrag);
  EXPECT_EQ(Now("Blur"), 50.0);
  EXPECT_EQ(Number("FullBlurPPG", "Blur").Value(), 50.0);
  EXPECT_EQ(History().UndoDepth(), 1u);
  EXPECT_EQ(History().UndoName(), "Blur");
  Do("move 5 5");
  EXPECT_TRUE(SeesRing(50));
  Do("undo");
  EXPECT_EQ(Number("FullBlurPPG", "Blur").Value(), 30.0);
  EXPECT_TRUE(SeesRing(30));
  EXPECT_FALSE(SeesRing(50));
  Do("redo");
  EXPECT_EQ(Number("FullBlurPPG", "Blur").Value(), 50.0);
  EXPECT_TRUE(SeesRing(50));
}

TEST_F(ViewedPages, RingAndChipShowTheCurveAfterAnUndo) {
  const Curve grows{{{0.0, 10.0}, {10.0, 70.0}}, Interpolation::Linear};
  job.properties.Set(PropertyNamed("Blur").guid, grows);
  job.properties.Set(PropertyNamed("Crop Colour R").guid, grows);
  Open("FullBlurPPG");
  Do("time 5\nset Blur 20\nset Crop Colour R 100\nundo\nundo");
  EXPECT_EQ(Now("Blur", 5.0), 40.0);
  EXPECT_TRUE(SeesRing(40)) << "not the plain value behind the curve";
  session->OpenPage("crop", false);
  const auto chip = [&] {
    const auto& item = session->Pages().Front()->dialog->Item(5006);
    return dynamic_cast<const ColourChipControl&>(*item).Colour()[0];
  };
  EXPECT_EQ(chip(), 102);
  Do("set Crop Colour R 100\nundo");
  EXPECT_EQ(chip(), 102);
}

TEST_F(ViewedPages, NothingIsUndoneDuringADrag) {
  Open("FullBlurPPG");
  Do("set Aspect 1\nset Aspect 2\nundo");
  const auto events = ParsePenScript("move 130 60\ndown 130 60\nmove 140 60\nundo\nredo\nup 140 60", "story.pen", "");
  for (std::size_t i = 0; i < 3; ++i)
    session->Apply(events[i]);
  EXPECT_FALSE(History().CanUndo());
  EXPECT_FALSE(History().Undo());
  EXPECT_FALSE(History().Redo());
  EXPECT_EQ(UsageFailureOf([&] { session->Apply(events[3]); }), "story.pen:4: expected the pen to be up before undo");
  EXPECT_EQ(UsageFailureOf([&] { session->Apply(events[4]); }), "story.pen:5: expected the pen to be up before redo");
  EXPECT_EQ(Now("Aspect"), 1.0);
  session->Apply(events[5]);
  EXPECT_EQ(Now("Blur"), 40.0);
  EXPECT_EQ(History().UndoDepth(), 2u);
  Do("undo");
  EXPECT_EQ(Now("Blur"), 30.0);
}

TEST_F(ViewedPages, ADragOfTwoCropLinesIsOneStep) {
  Open("crop");
  Do("set Crop Left 25\nset Crop Bottom 25");
  const PropertyStore before = session->Properties();
  Do("move 50 30\ndown 50 30\nmove 60 36\nup 60 36");
  EXPECT_NE(Now("Crop Left"), 25.0);
  EXPECT_NE(Now("Crop Bottom"), 25.0);
  EXPECT_EQ(Number("crop", "Crop Left").Value(), Now("Crop Left"));
  EXPECT_EQ(History().UndoDepth(), 3u);
  EXPECT_EQ(History().UndoName(), "Crop Left");
  Do("undo");
  EXPECT_EQ(session->Properties(), before);
}

TEST_F(ViewedPages, AnAnimatedBlurGetsItsKeyAtTheViewersTimeAndLosesIt) {
  job.properties.Set(PropertyNamed("Blur").guid, Curve{{{0.0, 30.0}, {10.0, 30.0}}});
  Open("FullBlurPPG");
  const PropertyStore before = session->Properties();
  Do(std::string("time 4\n") + kDrag);
  EXPECT_EQ(Now("Blur", 4.0), 50.0);
  EXPECT_EQ(Now("Blur", 0.0), 30.0);
  EXPECT_EQ(Number("FullBlurPPG", "Blur").AnimationMark(), DSAnimationMark::Key);
  Do("move 5 5\ntime 2");
  EXPECT_EQ(Number("FullBlurPPG", "Blur").Value(), 40.0) << "the page has the viewer's time";
  EXPECT_TRUE(SeesRing(40));
  Do("undo");
  EXPECT_EQ(session->Properties(), before);
  EXPECT_TRUE(SeesRing(30));
}

TEST_F(ViewedPages, PageVerbsMoveTheRing) {
  Open("FullBlurPPG");
  EXPECT_TRUE(SeesRing(30));
  Do("scrub Blur coarse 2");
  EXPECT_TRUE(SeesRing(50));
  Do("press Reset");
  EXPECT_TRUE(SeesRing(10));
  EXPECT_EQ(History().UndoName(), "Reset");
  Do("undo");
  EXPECT_TRUE(SeesRing(50));
}

TEST_F(ViewedPages, ARingThatIsDraggedAfterAResetIsTheNextStep) {
  Open("FullBlurPPG");
  Do("press Reset\nmove 110 60\ndown 110 60\nmove 120 60\nup 120 60");
  EXPECT_EQ(Now("Blur"), 20.0);
  EXPECT_EQ(History().UndoDepth(), 2u);
  Do("undo\nundo");
  EXPECT_EQ(Now("Blur"), 30.0);
}

TEST_F(ViewedPages, TheBoxHidesTheRingAndANewPageKnowsNothingOfIt) {
  Open("FullBlurPPG");
  EXPECT_TRUE(SeesRing(30));
  const PropertyStore before = session->Properties();
  Do("show HelpPPG\ntick \"Hide Overlay Controls\"\nshow FullBlurPPG");
  EXPECT_FALSE(SeesRing(30));
  EXPECT_FALSE(History().CanUndo());
  EXPECT_EQ(session->Properties(), before);
  Do(kDrag);
  EXPECT_EQ(Now("Blur"), 30.0) << "nor touched";

  session->Pages().Close("HelpPPG");
  Do("show HelpPPG");
  EXPECT_FALSE(SeesRing(30)) << "an empty box over hidden controls";
  Do("untick \"Hide Overlay Controls\"");
  EXPECT_FALSE(SeesRing(30)) << "it is unticked already";
  Do("tick \"Hide Overlay Controls\"\nuntick \"Hide Overlay Controls\"\nshow FullBlurPPG");
  EXPECT_TRUE(SeesRing(30));
  Do("show HelpPPG\ntick \"Hide Overlay Controls\"");
  session->Pages().CloseAll();
  Do("show FullBlurPPG");
  EXPECT_TRUE(SeesRing(30)) << "the last page took the controls with it";
}

TEST_F(ViewedPages, ShowAnotherControlWithAnotherPage) {
  Open("FullBlurPPG");
  EXPECT_TRUE(SeesRing(30));
  Do("show crop");
  EXPECT_FALSE(SeesRing(30));
  Do("show FullBlurPPG");
  EXPECT_TRUE(SeesRing(30));
  session->Pages().CloseAll();
  EXPECT_FALSE(SeesRing(30));
}

TEST_F(ViewedPages, PrintsThePageInFront) {
  Open("FullBlurPPG");
  std::vector<std::string> printed;
  session->OnPrint([&](const std::string& form) { printed.push_back(form); });
  Do(std::string(kDrag) + "\nprint\nshow crop\ntime 3\nprint");
  ASSERT_EQ(printed.size(), 2u);
  EXPECT_NE(printed[0].find("\n  Blur         50      0 to 720\n"), std::string::npos) << printed[0];
  EXPECT_TRUE(printed[1].starts_with("Cropping (crop) at 3\n"));
}

TEST_F(ViewedPages, RefuseAPageThatTheUseLacks) {
  Open("FullBlurPPG");
  const auto refusal = [&](const std::string& event) { return UsageFailureOf([&] { Do(event); }); };
  EXPECT_EQ(refusal("show transition"),
            "story.pen:1: expected one of the pages FullBlurPPG, crop, HelpPPG, found \"transition\"");
  EXPECT_EQ(session->Pages().Front()->name, "FullBlurPPG");
  job.projectUnreadable = true;
  Open("FullBlurPPG");
  for (const char* name : {"crop", "CROP"}) {
    EXPECT_EQ(refusal(std::string("show ") + name),
              "story.pen:1: crop page: expected a project whose sizes can be read");
  }
  EXPECT_EQ(session->Pages().Find("crop"), nullptr);
}

// Pages, viewer and effect without a session, in every order.
class ViewedPagesOfAViewer : public testing::Test {
 protected:
  ViewedPagesOfAViewer() {
    tagDSImgFxInfo use;
    use.record = kDSImgFxInfoRecord;
    use.family = families::kTransition;
    EXPECT_EQ(effect->GetImageEffectInfo(&use), kOk);
    history.emplace(*properties);
    pages.emplace(*properties, *history);
  }
  ~ViewedPagesOfAViewer() override {
    if (viewer) viewer->Edit(nullptr);
  }
  void MakeViewer() {
    viewer = Viewer::Make();
    viewer->Edit(properties.get());
    viewer->UseUndo(&*history);
  }
  std::size_t Tools() const { return viewer->ToolCount(); }

  ComPtr<IDSImageEffect> effect = MakeEffect();
  ComPtr<IDSProperties> properties = effect.As<IDSProperties>();
  ComPtr<Viewer> viewer;
  std::optional<UndoHistory> history;
  std::optional<EffectPages> pages;
};

TEST_F(ViewedPagesOfAViewer, HaveOneToolHoweverManyThereAre) {
  MakeViewer();
  for (const std::string_view name : pages->Listed()) {
    pages->Show(name);
    EXPECT_EQ(Tools(), 1u) << name;
  }
  pages->Show("crop");
  EXPECT_EQ(Tools(), 1u);
}

TEST_F(ViewedPagesOfAViewer, PutTheirToolThereWhenTheFirstOpens) {
  pages->Show("TransitionBlurPPG");
  MakeViewer();
  EXPECT_EQ(Tools(), 0u) << "the viewer came later";
  pages->Show("crop");
  EXPECT_EQ(Tools(), 0u) << "the tool has been made";
  pages->CloseAll();
  pages->Show("crop");
  EXPECT_EQ(Tools(), 1u);
}

TEST_F(ViewedPagesOfAViewer, CloseInEveryOrder) {
  std::vector<std::string> order{"HelpPPG", "TransitionBlurPPG", "crop", "transition"};
  MakeViewer();
  do {
    for (const std::string_view name : pages->Listed())
      pages->Show(name);
    for (std::size_t closed = 0; closed < order.size(); ++closed) {
      EXPECT_EQ(Tools(), 1u);
      pages->Close(order[closed]);
    }
    EXPECT_EQ(Tools(), 0u) << "with the last";
  } while (std::ranges::next_permutation(order).found);
}

// What ends first: the effect's other owners, the viewer, its tools, or the pages.
TEST_F(ViewedPagesOfAViewer, EndInEveryOrder) {
  std::array<int, 4> order{0, 1, 2, 3};
  do {
    if (!effect) effect = MakeEffect();
    properties = effect.As<IDSProperties>();
    tagDSImgFxInfo use;
    use.record = kDSImgFxInfoRecord;
    use.family = families::kFilter;
    EXPECT_EQ(effect->GetImageEffectInfo(&use), kOk);
    pages.reset();
    history.emplace(*properties);
    pages.emplace(*properties, *history);
    MakeViewer();
    pages->Show("FullBlurPPG");
    pages->Show("HelpPPG");
    for (const int what : order) {
      switch (what) {
        case 0:
          properties.reset();
          effect.reset();
          break;
        case 1:
          viewer->UseUndo(nullptr);
          viewer->Edit(nullptr);
          viewer.reset();
          break;
        case 2:
          if (viewer) viewer->Clear();
          break;
        default: pages->CloseAll();
      }
      if (properties) {
        EXPECT_EQ(properties->PutValue(PropertyNamed("Blur").guid, DSVariant::Of(static_cast<double>(what))), kOk);
      }
      if (viewer) viewer->SetTime(what + 1.0);
      pages->SetTime(what + 1.0);
    }
    history->Undo();
  } while (std::ranges::next_permutation(order).found);
}

}  // namespace
}  // namespace vblur::host
