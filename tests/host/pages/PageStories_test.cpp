// Stories of users and property pages, through the host and this build's server.
#include <algorithm>
#include <array>

#include <gtest/gtest.h>

#include "properties/PageNames.h"
#include "tests/host/pages/PagedEffect.h"
#include "tests/support/host/FailureOf.h"

namespace vblur::host {
namespace {

using ChipColour = std::array<std::int32_t, 4>;

// What the chip shows of percentages.
std::int32_t Component(double percent) {
  return static_cast<std::int32_t>(percent * 2.55);
}

// The numbers of the blending group that take input.
std::vector<std::string> EnabledNumbers(PagedEffect& user) {
  std::vector<std::string> names;
  for (const char* name : {"Blend", "Effect Gain", "Source Gain"}) {
    if (ControlOf<NumberControl>(user.Page(pages::kFullBlur), name).IsEnabled()) names.emplace_back(name);
  }
  return names;
}

const std::vector<std::string> kNoNumber;
const std::vector<std::string> kAllNumbers{"Blend", "Effect Gain", "Source Gain"};

TEST(PageStories, TheListOfMixesEnablesItsNumbers) {
  PagedEffect user;
  user.Do("show FullBlurPPG");
  EXPECT_EQ(EnabledNumbers(user), kNoNumber) << "as the page opens";
  user.Do("choose \"Mix Back\" Mix");
  EXPECT_EQ(EnabledNumbers(user), kAllNumbers);
  user.Do("choose \"Mix Back\" Screen\nset Blend 20");
  EXPECT_EQ(EnabledNumbers(user), kAllNumbers);
  user.Do("undo\nundo\nundo");
  EXPECT_EQ(EnabledNumbers(user), kNoNumber) << "by undo";
  user.Do("redo");
  EXPECT_EQ(EnabledNumbers(user), kAllNumbers) << "by redo";
  user.Do("press Reset");
  EXPECT_EQ(EnabledNumbers(user), kNoNumber) << "by Reset";
  user.Do("undo");
  EXPECT_EQ(EnabledNumbers(user), kAllNumbers) << "by undo of Reset";
  user.Do("redo");
  EXPECT_EQ(EnabledNumbers(user), kNoNumber) << "by redo of Reset";
  user.Put("Mix Back", 18.0);
  EXPECT_EQ(EnabledNumbers(user), kAllNumbers) << "by another";
  user.Do("choose \"Mix Back\" None");
  EXPECT_EQ(EnabledNumbers(user), kNoNumber);
  for (const auto& item : user.Front().dialog->Items()) {
    if (item->Kind() == PageWindowKind::Label || item->Kind() == PageWindowKind::Group) {
      EXPECT_TRUE(item->IsEnabled()) << item->Id();
    }
  }
}

TEST(PageStories, AMixThatIsThereEnablesTheNumbersOfANewPage) {
  PagedEffect user;
  user.Put("Mix Back", 1.0);
  user.Do("show FullBlurPPG");
  EXPECT_EQ(EnabledNumbers(user), kAllNumbers);
  user.Do("show HelpPPG");
  user.Put("Mix Back", 0.0);
  EXPECT_EQ(EnabledNumbers(user), kNoNumber) << "behind another page";
}

TEST(PageStories, TheChipWritesThreeNumbers) {
  PagedEffect user;
  user.Do("show crop\nset \"Crop Colour A\" 30\npick 200,40,10");
  EXPECT_EQ(user.ValueAt("Crop Colour R"), 200.0 * 100.0 / 255.0);
  EXPECT_EQ(user.ValueAt("Crop Colour G"), 40.0 * 100.0 / 255.0);
  EXPECT_EQ(user.ValueAt("Crop Colour B"), 10.0 * 100.0 / 255.0);
  EXPECT_EQ(user.ValueAt("Crop Colour A"), 30.0);
  EXPECT_EQ(user.Number("Crop Colour R"), 200.0 * 100.0 / 255.0);
  EXPECT_EQ(user.Chip(), (ChipColour{200, 40, 10, 255}));
  EXPECT_EQ(user.History().UndoDepth(), 2u) << "one for the number, one for the colour";
  user.Do("undo");
  EXPECT_EQ(user.Chip(), (ChipColour{0, 0, 0, 255}));
  EXPECT_EQ(user.Number("Crop Colour R"), 0.0);
  EXPECT_EQ(user.Number("Crop Colour A"), 30.0);
  user.Do("redo");
  EXPECT_EQ(user.Number("Crop Colour R"), 200.0 * 100.0 / 255.0);
  EXPECT_EQ(user.Chip(),
            (ChipColour{Component(20000.0 / 255.0), Component(4000.0 / 255.0), Component(1000.0 / 255.0), 255}));
}

TEST(PageStories, NumbersMoveTheChip) {
  PagedEffect user;
  user.Do("show crop\nset \"Crop Colour R\" 100\nset \"Crop Colour G\" 50\nset \"Crop Colour B\" 1");
  EXPECT_EQ(user.Chip(), (ChipColour{254, 127, 2, 255})) << "cut, not rounded";
  user.Do("set \"Crop Colour A\" 100");
  EXPECT_EQ(user.Chip(), (ChipColour{254, 127, 2, 255}));
  user.Put("Crop Colour G", 400.0);
  EXPECT_EQ(user.Chip(), (ChipColour{254, 255, 2, 255}));
  user.Put("Crop Colour G", -400.0);
  EXPECT_EQ(user.Chip(), (ChipColour{254, 0, 2, 255}));
  user.Do("press Reset");
  EXPECT_EQ(user.Chip(), (ChipColour{0, 0, 0, 255}));
  EXPECT_EQ(user.Number("Crop Colour A"), 0.0);
}

TEST(PageStories, AnAnimatedColourMovesTheChipWithTheTime) {
  Job job;
  job.properties.Set(PropertyNamed("Crop Colour R").guid, Curve{{{0.0, 0.0}, {10.0, 100.0}}});
  job.properties.Set(PropertyNamed("Crop Colour G").guid, 20.0);
  PagedEffect user(job);
  user.Do("show crop");
  EXPECT_EQ(user.Chip(), (ChipColour{0, 51, 0, 255}));
  user.Do("time 5");
  EXPECT_EQ(user.Chip(), (ChipColour{127, 51, 0, 255}));
  user.Do("time 10");
  EXPECT_EQ(user.Chip(), (ChipColour{254, 51, 0, 255}));
  const auto mark = [&] { return ControlOf<NumberControl>(user.Front(), "Crop Colour R").AnimationMark(); };
  EXPECT_EQ(mark(), DSAnimationMark::Key);
  user.Do("time 5");
  EXPECT_EQ(mark(), DSAnimationMark::Animated);
  const HeldProperties before = user.Held();

  user.Do("pick 51,102,153");
  EXPECT_EQ(mark(), DSAnimationMark::Key);
  EXPECT_EQ(user.ValueAt("Crop Colour R", 0.0), 0.0);
  EXPECT_EQ(user.ValueAt("Crop Colour R", 5.0), 20.0);
  EXPECT_EQ(user.ValueAt("Crop Colour R", 10.0), 100.0);
  EXPECT_EQ(user.ValueAt("Crop Colour G", 99.0), 40.0) << "no keys, so a plain value";
  user.Do("time 10");
  EXPECT_EQ(user.Chip(), (ChipColour{254, Component(40.0), Component(60.0), 255}));
  user.Do("undo");
  EXPECT_EQ(user.Held(), before);
  EXPECT_EQ(user.Chip(), (ChipColour{254, 51, 0, 255}));
}

TEST(PageStories, EachUseHasItsPages) {
  using Names = std::vector<std::string_view>;
  const auto listed = [](EffectKind kind) { return PagedEffect(kind).session.Pages().Listed(); };
  EXPECT_EQ(listed(EffectKind::Filter), (Names{"FullBlurPPG", "crop", "HelpPPG"}));
  EXPECT_EQ(listed(EffectKind::Paint), (Names{"FullBlurPPG", "HelpPPG"}));
  EXPECT_EQ(listed(EffectKind::Transition), (Names{"TransitionBlurPPG", "transition", "crop", "HelpPPG"}));
  EXPECT_EQ(listed(EffectKind::Source), Names{});
  EXPECT_EQ(listed(EffectKind::Generator), Names{});
  EXPECT_EQ(listed(EffectKind::Other), Names{});
}

TEST(PageStories, ATransitionsBlurPageHasNoBlending) {
  PagedEffect user(EffectKind::Transition);
  user.Put("Mix Back", 3.0);
  user.Do("show TransitionBlurPPG\nset Blur 33\npress Reset");
  EXPECT_EQ(user.ValueAt("Mix Back"), 3.0) << "it stays with the effect";
  EXPECT_EQ(UsageFailureOf([&] { user.Do("set Blend 3"); }),
            "story.page:1: expected one of the controls Method, Channels, Blur, Aspect, Reset, found \"Blend\"");
}

TEST(PageStories, TwoPagesShowOneEffect) {
  PagedEffect user(EffectKind::Transition);
  user.Do("show TransitionBlurPPG\nset Blur 33\nshow crop\nset \"Crop Left\" 5\nshow transition");
  EXPECT_EQ(user.session.Pages().Count(), 3u);
  EXPECT_EQ(ControlOf<NumberControl>(user.Page(pages::kTransitionBlur), "Blur").Value(), 33.0);
  user.Do("undo\nundo");
  EXPECT_EQ(ControlOf<NumberControl>(user.Page(pages::kCrop), "Crop Left").Value(), 0.0) << "behind the front page";
  EXPECT_EQ(ControlOf<NumberControl>(user.Page(pages::kTransitionBlur), "Blur").Value(), 10.0);
  user.Do("show TransitionBlurPPG");
  EXPECT_EQ(user.session.Pages().Count(), 3u) << "the page that is open";
  EXPECT_FALSE(user.Page(pages::kCrop).dialog->IsVisible());
  EXPECT_TRUE(user.Front().dialog->IsVisible());
}

TEST(PageStories, TwoEffectsHavePagesOfTheirOwn) {
  PagedEffect one;
  PagedEffect other;
  one.Do("show FullBlurPPG\nset Blur 1");
  other.Do("show FullBlurPPG\nset Blur 2");
  EXPECT_EQ(one.Number("Blur"), 1.0);
  EXPECT_EQ(other.Number("Blur"), 2.0);
  one.Do("undo");
  EXPECT_EQ(one.Number("Blur"), 10.0);
  EXPECT_EQ(other.Number("Blur"), 2.0);
  EXPECT_TRUE(other.History().CanUndo());
  other.session.Pages().CloseAll();
  one.Do("set Blur 5");
  EXPECT_EQ(one.ValueAt("Blur"), 5.0);
  EXPECT_EQ(other.ValueAt("Blur"), 2.0);
}

TEST(PageStories, APageOutlivesTheEffectsOtherOwners) {
  auto effect = MakeEffect();
  tagDSImgFxInfo use;
  use.record = kDSImgFxInfoRecord;
  use.family = families::kFilter;
  ASSERT_EQ(effect->GetImageEffectInfo(&use), kOk);
  auto properties = effect.As<IDSProperties>();
  UndoHistory history(*properties);
  EffectPages pages(*properties, history);
  pages.Show("FullBlurPPG");
  pages.Show("crop");
  properties.reset();
  effect.reset();
  auto& left = ControlOf<NumberControl>(*pages.Front(), "Crop Left");
  EXPECT_EQ(left.Type("20"), std::nullopt);
  EXPECT_EQ(history.UndoName(), "Crop Left");
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(left.Value(), 0.0);
}

TEST(PageStories, AnEffectOutlivesItsPages) {
  ComPtr<IDSProperties> effect;
  {
    PagedEffect user;
    effect = user.effect;
    user.Do("show HelpPPG\nshow crop\nshow FullBlurPPG\nset Blur 33");
  }
  const auto put = [&](double value) { return effect->PutValue(PropertyNamed("Blur").guid, DSVariant::Of(value)); };
  EXPECT_EQ(put(12.0), kOk) << "no page listens any more";
  PagedEffect other;
  other.Do("show FullBlurPPG");
  EXPECT_EQ(put(13.0), kOk);
}

TEST(PageStories, PagesCloseInAnyOrder) {
  std::vector<std::string> order{"HelpPPG", "TransitionBlurPPG", "crop", "transition"};
  do {
    PagedEffect user(EffectKind::Transition);
    EffectPages& pages = user.session.Pages();
    for (const std::string_view name : pages.Listed())
      pages.Show(name);
    for (std::size_t closed = 0; closed < order.size(); ++closed) {
      user.Put("Crop Left", static_cast<double>(closed) + 1.0);
      user.Put("Blur", static_cast<double>(closed) + 1.0);
      pages.Close(order[closed]);
      EXPECT_EQ(pages.Count(), order.size() - closed - 1);
      if (OpenedPage* const crop = pages.Find("crop"); crop != nullptr) {
        EXPECT_EQ(ControlOf<NumberControl>(*crop, "Crop Left").Value(), static_cast<double>(closed) + 1.0);
      }
      EXPECT_TRUE(user.History().Undo());
      EXPECT_TRUE(user.History().Undo());
    }
    EXPECT_EQ(pages.Front(), nullptr);
  } while (std::ranges::next_permutation(order).found);
}

TEST(PageStories, PagesFollowWhatOthersWrite) {
  PagedEffect user;
  user.Do("show FullBlurPPG\nshow crop");
  user.Put("Crop Left", 12.0);
  user.Put("Crop Colour B", 100.0);
  user.Put("Y Edge Method", 3.0);
  user.Put("Display Cropped", 1.0);
  EXPECT_EQ(user.Number("Crop Left"), 12.0);
  EXPECT_EQ(user.Chip(), (ChipColour{0, 0, 254, 255}));
  EXPECT_EQ(user.Entry("Y Edge Method"), "Wrap");
  EXPECT_TRUE(user.IsTicked("Display Cropped Source"));
  user.Put("Blur", 300.0);
  user.Put("Blur", 9000.0);
  EXPECT_EQ(ControlOf<NumberControl>(user.Page(pages::kFullBlur), "Blur").Value(), 9000.0) << "as it is";
  EXPECT_EQ(user.effect->PutCurve(PropertyNamed("Blur").guid, {{{0.0, 1.0}, {1.0, 2.0}}}), kOk);
  EXPECT_EQ(ControlOf<NumberControl>(user.Page(pages::kFullBlur), "Blur").Value(), 1.0);
  EXPECT_EQ(user.History().UndoDepth(), 7u) << "each is a step";
}

TEST(PageStories, OnlyResetTouchesBlankCropped) {
  PagedEffect user;
  user.Put("Blank Cropped", 1.0);
  user.Do("show crop");
  for (const auto& item : user.Front().dialog->Items())
    EXPECT_NE(user.Front().NameOf(*item), "Blank Cropped");
  constexpr std::int32_t kEntryWithoutControl = 5020;
  EXPECT_EQ(user.Front().dialog->Item(kEntryWithoutControl), nullptr);
  ASSERT_NE(user.Front().info.controls->Find(kEntryWithoutControl), nullptr);
  EXPECT_EQ(user.Front().info.controls->Find(kEntryWithoutControl)->property, PropertyNamed("Blank Cropped").guid);
  EXPECT_EQ(
      UsageFailureOf([&] { user.Do("tick \"Blank Cropped\""); }),
      "story.page:1: expected a control of the page crop, found \"Blank Cropped\"; did you mean \"Display Cropped\"?");
  user.Do(
      "tick \"Display Cropped\"\nset \"Crop Left\" 3\npick 1,2,3\nchoose \"X Edge Method\" Wrap\nshow FullBlurPPG\n"
      "press Reset");
  EXPECT_EQ(user.ValueAt("Blank Cropped"), 1.0);
  user.Do("show crop\npress Reset");
  EXPECT_EQ(user.ValueAt("Blank Cropped"), 0.0);
  user.Do("undo");
  EXPECT_EQ(user.ValueAt("Blank Cropped"), 1.0);
}

TEST(PageStories, TheHideBoxIsNoPartOfTheEffect) {
  PagedEffect user;
  user.Do("show HelpPPG");
  const HeldProperties before = user.Held();
  EXPECT_FALSE(user.IsTicked("Hide Overlay Controls"));
  user.Do("tick \"Hide Overlay Controls\"");
  EXPECT_TRUE(user.IsTicked("Hide Overlay Controls"));
  EXPECT_EQ(user.Held(), before) << "nor stored";
  EXPECT_EQ(user.History().UndoDepth(), 0u);
  user.Put("Hide Overlay Controls", 1.0);
  user.Do("untick \"Hide Overlay Controls\"");
  EXPECT_EQ(user.ValueAt("Hide Overlay Controls"), 1.0) << "nor read";
  user.session.Pages().Close("HelpPPG");
  user.Do("show HelpPPG");
  EXPECT_FALSE(user.IsTicked("Hide Overlay Controls")) << "a page begins unticked";
  EXPECT_EQ(user.ValueAt("Hide Overlay Controls"), 1.0);
}

}  // namespace
}  // namespace vblur::host
