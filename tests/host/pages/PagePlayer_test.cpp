// Events of a page script on the pages of this build's effect.
#include "host/pages/PagePlayer.h"

#include <gtest/gtest.h>

#include "tests/host/pages/PagedEffect.h"
#include "tests/support/host/FailureOf.h"

namespace vblur::host {
namespace {

class PagePlayerOfAnEffect : public testing::Test {
 protected:
  std::string Refusal(const std::string& event) {
    const HeldProperties before = user.Held();
    const std::string line = UsageFailureOf([&] { user.Do(event); });
    EXPECT_EQ(user.Held(), before) << event;
    const std::string place = "story.page:1: ";
    EXPECT_EQ(line.substr(0, place.size()), place);
    return line.substr(std::min(place.size(), line.size()));
  }

  PagedEffect user;
};

TEST_F(PagePlayerOfAnEffect, CarriesOutEveryVerb) {
  std::int32_t prints = 0;
  user.session.OnPrint([&] { ++prints; });
  user.Do("show FullBlurPPG\nset Blur 24\nscrub Aspect +5 -2 +1\nchoose Method Sharpen\nprint");
  EXPECT_EQ(user.ValueAt("Blur"), 24.0);
  EXPECT_EQ(user.ValueAt("Aspect"), 4.0);
  EXPECT_EQ(user.ValueAt("Method"), 1.0);
  EXPECT_EQ(prints, 1);
  user.Do("undo");
  EXPECT_EQ(user.ValueAt("Method"), 0.0);
  user.Do("redo\npress Reset");
  EXPECT_EQ(user.ValueAt("Method"), 0.0);
  EXPECT_EQ(user.ValueAt("Blur"), 10.0);
  user.Do("show crop\ntick \"Display Cropped Source\"\npick 255,0,51");
  EXPECT_EQ(user.ValueAt("Display Cropped"), 1.0);
  EXPECT_EQ(user.ValueAt("Crop Colour R"), 100.0);
  EXPECT_EQ(user.ValueAt("Crop Colour B"), 20.0);
  user.Do("tick \"Display Cropped Source\"");
  EXPECT_EQ(user.ValueAt("Display Cropped"), 1.0) << "twice is once";
  user.Do("untick \"Display Cropped Source\"\ntime 7.5");
  EXPECT_EQ(user.ValueAt("Display Cropped"), 0.0);
  EXPECT_EQ(user.session.Pages().CurrentTime(), 7.5);
}

TEST_F(PagePlayerOfAnEffect, SetsAKeyAtTheTime) {
  EXPECT_EQ(user.effect->PutCurve(PropertyNamed("Blur").guid, {{{0.0, 4.0}, {10.0, 40.0}}}), kOk);
  user.Do("show FullBlurPPG\ntime 5\nset Blur +=3\nset Aspect 8");
  EXPECT_EQ(user.ValueAt("Blur", 5.0), 25.0);
  EXPECT_EQ(user.ValueAt("Blur", 0.0), 4.0);
  EXPECT_EQ(user.ValueAt("Blur", 10.0), 40.0);
  EXPECT_EQ(user.ValueAt("Aspect", 10.0), 8.0);
}

TEST_F(PagePlayerOfAnEffect, TypesAsANumberControlReads) {
  user.Do("show FullBlurPPG\nset Blur 50%");
  EXPECT_EQ(user.ValueAt("Blur"), 360.0);
  user.Do("set Blur (3 + 4) * 2");
  EXPECT_EQ(user.ValueAt("Blur"), 14.0);
  user.Do("set Blur 9999");
  EXPECT_EQ(user.ValueAt("Blur"), 720.0);
  user.Do("scrub Blur fine -5");
  EXPECT_EQ(user.ValueAt("Blur"), 719.5);
  user.Do("scrub Blur coarse -2");
  EXPECT_EQ(user.ValueAt("Blur"), 699.5);
  user.Do("scrub Blur -2147483648 2147483647");
  EXPECT_EQ(user.ValueAt("Blur"), 720.0);
}

TEST_F(PagePlayerOfAnEffect, KnowsControlsByTheNamesOfPropertiesAndOptions) {
  user.Do("show FullBlurPPG\nchoose mix-back Screen\nset effect-gain 3\nset SOURCE GAIN 4\nset \"source-gain\" +=1");
  EXPECT_EQ(user.ValueAt("Mix Back"), 10.0);
  EXPECT_EQ(user.ValueAt("Effect Gain"), 3.0);
  EXPECT_EQ(user.ValueAt("Source Gain"), 5.0);
  user.Do("show crop\nset crop color g 20\nset crop-colour-b 30\ntick display-cropped\nchoose X-Edge-Method 3");
  EXPECT_EQ(user.ValueAt("Crop Colour G"), 20.0);
  EXPECT_EQ(user.ValueAt("Crop Colour B"), 30.0);
  EXPECT_EQ(user.ValueAt("Display Cropped"), 1.0);
  EXPECT_EQ(user.ValueAt("X Edge Method"), 3.0);
  user.Do("untick display cropped source");
  EXPECT_EQ(user.ValueAt("Display Cropped"), 0.0) << "by the box's text";
}

TEST_F(PagePlayerOfAnEffect, KnowsEntriesAsTheCommandLineDoes) {
  user.Do("show FullBlurPPG");
  for (const auto& [entry, value] :
       {std::pair<std::string, double>{"gray", 2.0}, {"luma", 7.0}, {"3", 3.0}, {"RGBA", 1.0}, {"chroma", 8.0}}) {
    user.Do("choose Channels " + entry);
    EXPECT_EQ(user.ValueAt("Channels"), value) << entry;
  }
  user.Do("choose \"Mix Back\" add-over");
  EXPECT_EQ(user.ValueAt("Mix Back"), 13.0);
  EXPECT_EQ(Refusal("choose Channels Sepia"),
            "Channels: expected one of RGB, RGBA, Grey, Red, Green, Blue, Alpha, Luminance, Chroma, U, V, or a whole "
            "number from 0 to 10, found \"Sepia\"");
  EXPECT_EQ(Refusal("choose Method 2"),
            "Method: expected one of Blur, Sharpen, or a whole number from 0 to 1, found \"2\"");
}

TEST_F(PagePlayerOfAnEffect, NeedsAPage) {
  for (const char* event :
       {"set Blur 3", "press Reset", "pick 1,2,3", "tick Box", "choose Method Blur", "scrub Blur 3"})
    EXPECT_EQ(Refusal(event), "expected \"show PAGE\" first, no page is open");
  EXPECT_EQ(Refusal("show none"), "expected one of the pages FullBlurPPG, crop, HelpPPG, found \"none\"");
  EXPECT_EQ(Refusal("show TransitionBlurPPG"),
            "expected one of the pages FullBlurPPG, crop, HelpPPG, found \"TransitionBlurPPG\"");
  user.Do("show CROP");
  EXPECT_EQ(user.Front().name, "crop");
  PagedEffect generator(EffectKind::Generator);
  EXPECT_EQ(UsageFailureOf([&] { generator.Do("show crop"); }),
            "story.page:1: the effect has no pages in this use, found \"crop\"");
}

TEST_F(PagePlayerOfAnEffect, RefusesControlsThatThePageLacks) {
  user.Do("show FullBlurPPG");
  EXPECT_EQ(Refusal("set Blurr 3"),
            "expected a control of the page FullBlurPPG, found \"Blurr\"; did you mean \"Blur\"?");
  EXPECT_EQ(Refusal("press Rest"),
            "expected a control of the page FullBlurPPG, found \"Rest\"; did you mean \"Reset\"?");
  const std::string all =
      "expected one of the controls Method, Channels, Blur, Aspect, Mix Back, Blend, Effect Gain, "
      "Source Gain, Reset, found ";
  EXPECT_EQ(Refusal("set \"Crop Left\" 3"), all + "\"Crop Left\"");
  EXPECT_EQ(Refusal("press \"Online Help\""), all + "\"Online Help\"");
  EXPECT_EQ(Refusal("press \"10\""), all + "\"10\"") << "what a number shows is no name";
  EXPECT_EQ(Refusal("pick 1,2,3"), "expected a page with a colour chip, FullBlurPPG has none");
  user.Do("show HelpPPG");
  EXPECT_EQ(Refusal("set Blur 3"), "expected one of the controls Hide Overlay Controls, Online Help, found \"Blur\"");
}

TEST_F(PagePlayerOfAnEffect, RefusesControlsOfAnotherKind) {
  user.Do("show FullBlurPPG");
  EXPECT_EQ(Refusal("choose Blur 3"), "expected a list, \"Blur\" is a number");
  EXPECT_EQ(Refusal("tick Blur"), "expected a check box, \"Blur\" is a number");
  EXPECT_EQ(Refusal("untick method"), "expected a check box, \"Method\" is a list");
  EXPECT_EQ(Refusal("set Channels 3"), "expected a number, \"Channels\" is a list");
  EXPECT_EQ(Refusal("scrub Reset 3"), "expected a number, \"Reset\" is a button");
  EXPECT_EQ(Refusal("press Aspect"), "expected a button, \"Aspect\" is a number");
  user.Do("show crop");
  EXPECT_EQ(Refusal("press \"Display Cropped Source\""), "expected a button, \"Display Cropped\" is a check box");
}

TEST_F(PagePlayerOfAnEffect, RefusesWhatIsDisabled) {
  user.Do("show FullBlurPPG");
  EXPECT_EQ(Refusal("set Blend 3"), "\"Blend\" takes no input, expected a control that is enabled");
  EXPECT_EQ(Refusal("scrub effect-gain 3"), "\"Effect Gain\" takes no input, expected a control that is enabled");
}

TEST_F(PagePlayerOfAnEffect, RefusesTextsThatAreNoNumber) {
  user.Do("show FullBlurPPG");
  const std::string expected =
      "Blur: expected a number such as 12.5, a percentage such as 50%, or an expression such as (3 + 4) * 2 or += 5, "
      "found ";
  EXPECT_EQ(Refusal("set Blur wide"), expected + "\"wide\"");
  EXPECT_EQ(Refusal("set Blur 5 6"), expected + "\"5 6\"");
  EXPECT_EQ(Refusal("set Blur \"\""), expected + "\"\"");
  EXPECT_EQ(Refusal("set Blur 1,5"), "Blur: expected a decimal point and no commas, found \"1,5\"");
  EXPECT_EQ(Refusal("set Blur 1/0"), "Blur: expected a finite result, found \"1/0\"");
}

TEST_F(PagePlayerOfAnEffect, SaysWhenThereIsNothingToUndo) {
  EXPECT_EQ(Refusal("undo"), "expected a step to undo, there is none");
  EXPECT_EQ(Refusal("redo"), "expected a step to redo, there is none");
  user.Do("show FullBlurPPG\nset Blur 3");
  EXPECT_EQ(Refusal("redo"), "expected a step to redo, there is none");
  user.Do("undo");
  EXPECT_EQ(Refusal("undo"), "expected a step to undo, there is none");
}

}  // namespace
}  // namespace vblur::host
