// The open pages of one effect.
#include "host/pages/EffectPages.h"

#include <gtest/gtest.h>

#include "properties/PageNames.h"
#include "tests/host/pages/PagedEffect.h"
#include "tests/support/host/FailureOf.h"

namespace vblur::host {
namespace {

TEST(EffectPages, ShowOneInFront) {
  PagedEffect user;
  EffectPages& pages = user.session.Pages();
  EXPECT_EQ(pages.Front(), nullptr);
  EXPECT_EQ(pages.Count(), 0u);
  OpenedPage& blur = pages.Show("fullblurppg");
  EXPECT_EQ(blur.name, "FullBlurPPG");
  EXPECT_EQ(blur.Title(), "V_Blur");
  EXPECT_EQ(pages.Front(), &blur);
  EXPECT_TRUE(blur.dialog->IsVisible());
  OpenedPage& crop = pages.Show("crop");
  EXPECT_EQ(crop.Title(), "Cropping");
  EXPECT_FALSE(blur.dialog->IsVisible());
  EXPECT_EQ(&pages.Show("FullBlurPPG"), &blur) << "the same again";
  EXPECT_FALSE(crop.dialog->IsVisible());
  EXPECT_EQ(pages.Count(), 2u);
  EXPECT_EQ(pages.Find("CROP"), &crop);
  EXPECT_EQ(pages.Find("HelpPPG"), nullptr);
}

TEST(EffectPages, CloseOneAfterAnother) {
  PagedEffect user;
  EffectPages& pages = user.session.Pages();
  pages.Show("FullBlurPPG");
  const auto dialog = pages.Show("crop").dialog;
  pages.Close("crop");
  EXPECT_FALSE(dialog->IsOpen());
  EXPECT_EQ(pages.Front(), nullptr);
  EXPECT_EQ(pages.Count(), 1u);
  pages.Close("crop");
  pages.Close("none");
  EXPECT_EQ(pages.Count(), 1u);
  pages.CloseAll();
  EXPECT_EQ(pages.Count(), 0u);
  pages.Show("crop");
  EXPECT_EQ(pages.Count(), 1u);
}

TEST(EffectPages, OfEveryClassCanBeMade) {
  PagedEffect user(EffectKind::Other);
  for (const std::string_view name : pages::kAll)
    EXPECT_EQ(user.session.Pages().Show(name).name, name) << "listed or not";
  EXPECT_EQ(user.session.Pages().Count(), pages::kAll.size());
}

TEST(EffectPages, KnowTheirControlsNamesAndProperties) {
  PagedEffect user;
  const OpenedPage& crop = user.session.Pages().Show("crop");
  const auto& box = ControlOf<CheckBoxControl>(crop, "Display Cropped");
  EXPECT_EQ(crop.PropertyOf(box), &PropertyNamed("Display Cropped"));
  EXPECT_EQ(Utf8Of(box.Text()), "Display Cropped Source");
  EXPECT_EQ(crop.PropertyOf(ChipOf(crop)), nullptr);
  EXPECT_EQ(crop.NameOf(ControlOf<ButtonControl>(crop, "Reset")), "Reset");
  const OpenedPage& help = user.session.Pages().Show("HelpPPG");
  const auto& hide = ControlOf<CheckBoxControl>(help, "Hide Overlay Controls");
  EXPECT_EQ(help.PropertyOf(hide), nullptr) << "a value of the page";
}

TEST(EffectPages, RefuseNamesThatNoPageHas) {
  PagedEffect user;
  EXPECT_EQ(UsageFailureOf([&] { user.session.Pages().Show("crops"); }),
            "unknown page \"crops\"; did you mean \"crop\"?");
  EXPECT_EQ(user.session.Pages().Count(), 0u);
}

TEST(EffectPages, RequireThoseOfTheUse) {
  PagedEffect user;
  EXPECT_NO_THROW(user.session.Pages().RequireListed("CROP", "place"));
  EXPECT_EQ(UsageFailureOf([&] { user.session.Pages().RequireListed("transition", "place"); }),
            "place: expected one of the pages FullBlurPPG, crop, HelpPPG, found \"transition\"");
  PagedEffect none(EffectKind::Source);
  EXPECT_EQ(UsageFailureOf([&] { none.session.Pages().RequireListed("crop", "place"); }),
            "place: the effect has no pages in this use, found \"crop\"");
}

TEST(EffectPages, FollowTheTime) {
  PagedEffect user;
  EXPECT_EQ(user.effect->PutCurve(PropertyNamed("Blur").guid, {{{0.0, 0.0}, {10.0, 100.0}}}), kOk);
  OpenedPage& blur = user.session.Pages().Show("FullBlurPPG");
  user.session.Pages().Show("crop");
  user.session.Pages().SetTime(3.0);
  EXPECT_EQ(ControlOf<NumberControl>(blur, "Blur").Value(), 30.0) << "those behind too";
}

}  // namespace
}  // namespace vblur::host
