// Pages as text.
#include "host/pages/PageForm.h"

#include <gtest/gtest.h>

#include "tests/host/pages/PagedEffect.h"

namespace vblur::host {
namespace {

TEST(PageForm, ShowsNamesValuesRangesAndEntries) {
  PagedEffect user(EffectKind::Transition);
  user.Do("show transition");
  EXPECT_EQ(user.session.Form(false),
            "Transition (transition) at 0\n"
            "  Effect Scaling                [Fade Effect In And Out]  Don't Scale Effect,\n"
            "                                                          Fade Effect In And Out, Cross Fade Effect\n"
            "  Finish Fading Out First Clip  100                       0 to 100\n"
            "  Start Fading In Second Clip   0                         0 to 100\n"
            "  Transition Ramping            [Ramp In and Out]         Linear, Ramp In, Ramp Out, Ramp In and Out\n"
            "  <Reset>\n");
}

TEST(PageForm, MarksKeysAndWhatIsDisabled) {
  PagedEffect user;
  EXPECT_EQ(user.effect->PutCurve(PropertyNamed("Blur").guid, {{{0.0, 0.0}, {10.0, 100.0}}}), kOk);
  EXPECT_EQ(user.effect->PutCurve(PropertyNamed("Blend").guid, {{{0.0, 0.0}, {10.0, 100.0}}}), kOk);
  user.Do("show FullBlurPPG\ntime 2.5");
  const auto has = [&](const std::string& line) {
    const std::string form = user.session.Form(false);
    EXPECT_NE(form.find("\n" + line + "\n"), std::string::npos) << form;
  };
  has("  Blur         25      0 to 720  (animated)");
  has("  Aspect       0       -100 to 100");
  has("  Blend        25      0 to 100  (animated, disabled)");
  has("  Effect Gain  100     -100 to 500  (disabled)");
  user.Do("time 10\nchoose \"Mix Back\" 1");
  has("  Blur         100     0 to 720  (key)");
  has("  Blend        100     0 to 100  (key)");
  EXPECT_TRUE(user.session.Form(false).starts_with("V_Blur (FullBlurPPG) at 10\n"));
}

TEST(PageForm, ShowsBoxesTheChipAndWhatAPersonReadsOfANumber) {
  PagedEffect user;
  user.Do("show crop\npick 200,40,10\ntick \"Display Cropped\"");
  EXPECT_EQ(user.session.Form(false),
            "Cropping (crop) at 0\n"
            "  Display Cropped Source  [x]\n"
            "  Crop Left               0                 0 to 100\n"
            "  Crop Right              100               0 to 100\n"
            "  Crop Bottom             0                 0 to 100\n"
            "  Crop Top                100               0 to 100\n"
            "  X Edge Method           [Reflect]         Colour, Repeat, Reflect, Wrap\n"
            "  Y Edge Method           [Reflect]         Colour, Repeat, Reflect, Wrap\n"
            "  -- Crop Colour --\n"
            "  Colour chip             200, 40, 10, 255\n"
            "  Crop Colour R           78.4314           0 to 100\n"
            "  Crop Colour G           15.6863           0 to 100\n"
            "  Crop Colour B           3.9216            0 to 100\n"
            "  Crop Colour A           0                 0 to 100\n"
            "  <Reset>\n");
}

TEST(PageForm, HasTextsWhereTheyStand) {
  PagedEffect user;
  user.Do("show HelpPPG");
  const std::string form = user.session.Form(false);
  const std::string top =
      "Help (HelpPPG) at 0\n"
      "  V_Blur can be used to blur or sharpen an image using a fast gaussian filter. The effect "
      "is\n  sub-pixel accurate";
  EXPECT_EQ(form.substr(0, top.size()), top);
  EXPECT_LT(form.find("All rights reserved."), form.find("Hide Overlay Controls")) << form;
  EXPECT_LT(form.find("Hide Overlay Controls"), form.find("<Online Help>"));
}

TEST(PageForm, HasToolTipsWhenTheyAreAskedFor) {
  PagedEffect user;
  user.Do("show FullBlurPPG");
  const std::string form = user.session.Form(true);
  EXPECT_NE(form.find("\n  Blur         10      0 to 720\n      Amount to blur by (in pixels).\n"), std::string::npos)
      << form;
  EXPECT_TRUE(form.ends_with("  <Reset>\n      Reset this page's values to their defaults.\n"));
  EXPECT_EQ(user.session.Form(false).find("Amount"), std::string::npos);
}

TEST(PageForm, HasNoLongLines) {
  for (const EffectKind kind : {EffectKind::Filter, EffectKind::Transition}) {
    PagedEffect user(kind);
    for (const std::string_view page : user.session.Pages().Listed()) {
      user.session.Pages().Show(page);
      std::istringstream lines(user.session.Form(true));
      for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), 100u) << line;
        EXPECT_FALSE(line.ends_with(' ')) << line;
      }
    }
  }
}

}  // namespace
}  // namespace vblur::host
