#include "pages/FullBlurPPG.h"

#include "tests/pages/PageTest.h"

namespace vblur {
namespace {

using host::Calls;
using host::ListControl;
using host::NumberControl;

class FullBlurPPGTest : public PageTest<FullBlurPPG> {
 protected:
  // Whether Blend and the gains take input; they do so together.
  bool MixTakesInput() {
    EXPECT_EQ(IsEnabled(1005), IsEnabled(1006));
    EXPECT_EQ(IsEnabled(1005), IsEnabled(1007));
    for (const std::int32_t id : {1000, 1001, 1002, 1003, 1004, 1008, 2005, 2006, 2007})
      EXPECT_TRUE(IsEnabled(id)) << id;
    return IsEnabled(1005);
  }
};

TEST_F(FullBlurPPGTest, IsNamed) {
  ExpectNamed("FullBlurPPG", u"V_Blur", 1);
}

TEST_F(FullBlurPPGTest, MapsItsControls) {
  ExpectControlMap(*page, "Vessin4.3",
                   {
                       {PropertyId::Method, 3, 1003, false, 16, 1018, 2003},
                       {PropertyId::Channels, 3, 1002, false, 16, 1005, 2002},
                       {PropertyId::Blur, 5, 1000, false, 1, 1001, 2000},
                       {PropertyId::Aspect, 5, 1001, false, 1, 1003, 2001},
                       {PropertyId::MixBack, 3, 1004, true, 16, 1022, 0},
                       {PropertyId::Blend, 5, 1005, false, 1, 1043, 2005},
                       {PropertyId::EffectGain, 5, 1006, false, 1, 1045, 2006},
                       {PropertyId::SourceGain, 5, 1007, false, 1, 1047, 2007},
                       {std::nullopt, 0, 1008, true, 18, 1051},
                   });
  Open();
  ExpectVariablesFollow();
}

TEST_F(FullBlurPPGTest, HasTips) {
  Open();
  EXPECT_EQ(site.dialog->Item(1000)->ToolTip(), u"Amount to blur by (in pixels).");
  EXPECT_EQ(site.dialog->Item(1008)->ToolTip(), u"Reset this page's values to their defaults.");
}

TEST_F(FullBlurPPGTest, AgreesOnRangesWithItsDialogAndItsProperties) {
  ExpectRangesAgree();
}

TEST_F(FullBlurPPGTest, SetsItsRanges) {
  const ForeignRanges ranges;
  Activate();
  ExpectRange(1000, 0.0, 720.0);
  ExpectRange(1001, -100.0, 100.0);
  ExpectRange(1005, 0.0, 100.0);
  ExpectRange(1006, -100.0, 500.0);
  ExpectRange(1007, -100.0, 500.0);
}

TEST_F(FullBlurPPGTest, FillsItsListsAndShowsTheDefaults) {
  Put(PropertyId::Channels, 5.0);
  Put(PropertyId::Method, 1.0);
  Put(PropertyId::MixBack, 3.0);
  Activate();
  ExpectList(1002, 1,
             {u"RGB", u"RGBA", u"Grey", u"Red", u"Green", u"Blue", u"Alpha", u"Luminance", u"Chroma", u"U", u"V"});
  ExpectList(1003, 0, {u"Blur", u"Sharpen"});
  ExpectList(1004, 0,
             {u"None", u"Mix", u"Luminance", u"Chroma", u"Hue", u"Saturation", u"Value", u"Colour", u"Darken",
              u"Lighten", u"Screen", u"Multiply", u"Add", u"Add Over", u"Add Under", u"Subtract", u"Difference",
              u"Overlay", u"HardLight"});
  page->Refresh();
  EXPECT_EQ(Of<ListControl>(1002).Text(), u"Blue") << "then the property decides";
  EXPECT_EQ(Of<ListControl>(1003).Text(), u"Sharpen");
  EXPECT_EQ(Of<ListControl>(1004).Text(), u"Chroma");
  page->Deactivate();
  page->Activate();
  EXPECT_EQ(Of<ListControl>(1003).Entries().size(), 2u);
}

TEST_F(FullBlurPPGTest, ReadsItsPropertiesAsItOpens) {
  Put(PropertyId::Blur, 44.0);
  Put(PropertyId::SourceGain, 70.0);
  Activate();
  EXPECT_EQ(Of<NumberControl>(1000).Value(), 44.0);
  EXPECT_EQ(Of<NumberControl>(1007).Value(), 70.0);
}

TEST_F(FullBlurPPGTest, LinksTheEffect) {
  ExpectLink();
}

TEST_F(FullBlurPPGTest, LivesWithoutAnEffect) {
  ExpectToLiveWithoutEffect();
}

TEST_F(FullBlurPPGTest, CountsInItsServer) {
  ExpectCounted();
}

TEST_F(FullBlurPPGTest, EnablesTheMixAsItOpens) {
  Activate();
  EXPECT_FALSE(MixTakesInput());
  page->Deactivate();
  Put(PropertyId::MixBack, 5.0);
  page->Activate();
  EXPECT_TRUE(MixTakesInput());
}

TEST_F(FullBlurPPGTest, EnablesTheMixByTheList) {
  Open();
  Of<ListControl>(1004).Choose(1);
  EXPECT_TRUE(MixTakesInput());
  Of<ListControl>(1004).Choose(18);
  EXPECT_TRUE(MixTakesInput());
  Of<ListControl>(1004).Choose(0);
  EXPECT_FALSE(MixTakesInput());
  EXPECT_EQ(Get(PropertyId::MixBack), 0.0);
}

TEST_F(FullBlurPPGTest, TheListsActionIsTheRule) {
  Open();
  SendMessageW(site.dialog->Item(1004)->Handle(), CB_SETCURSEL, 4, 0);
  effect->AddRef();
  // The action alone: no notice comes without an effect.
  page->SetObjects(0, nullptr);
  page->OnDialogMessage(WM_COMMAND, 1004, 0);
  EXPECT_TRUE(MixTakesInput());
  effect->Release();
}

TEST_F(FullBlurPPGTest, EnablesTheMixByNotices) {
  Open();
  Put(PropertyId::MixBack, 2.0);
  EXPECT_TRUE(MixTakesInput());
  Put(PropertyId::Method, 0.0);
  EXPECT_TRUE(MixTakesInput()) << "of another property";
  Put(PropertyId::MixBack, 0.0);
  EXPECT_FALSE(MixTakesInput());
  Of<ListControl>(1004).Choose(7);
  history.Undo();
  EXPECT_FALSE(MixTakesInput());
  history.Redo();
  EXPECT_TRUE(MixTakesInput());
  effect->SetDefaults();
  EXPECT_FALSE(MixTakesInput()) << "all have changed";
  EXPECT_FALSE(page->IsChanging());
}

TEST_F(FullBlurPPGTest, EnablesNothingWhileSuspended) {
  Open();
  OpenPage::SuspendedOf(*page) = 1;
  Put(PropertyId::MixBack, 2.0);
  EXPECT_FALSE(MixTakesInput());
  EXPECT_EQ(Of<ListControl>(1004).Selected(), 2) << "the base moves it";
  OpenPage::SuspendedOf(*page) = 0;
  page->Refresh();
  EXPECT_TRUE(MixTakesInput());
}

TEST_F(FullBlurPPGTest, ResetsInOneStep) {
  Open();
  for (const auto& [id, value] : {std::pair{PropertyId::Blur, 1.0},
                                  {PropertyId::Aspect, 2.0},
                                  {PropertyId::Channels, 3.0},
                                  {PropertyId::Method, 1.0},
                                  {PropertyId::MixBack, 5.0},
                                  {PropertyId::Blend, 6.0},
                                  {PropertyId::EffectGain, 7.0},
                                  {PropertyId::SourceGain, 8.0}})
    Put(id, value);
  const std::size_t before = history.UndoDepth();
  site.Taken();
  Press(1008);
  EXPECT_EQ(site.TakenChanges(),
            (Calls{"begin \"Reset\"", "begin \"Reset\"", "SetAnimatedProperty Blur 10", "SetAnimatedProperty Aspect 0",
                   "SetPlainProperty Channels 1", "SetPlainProperty Method 0", "SetPlainProperty Mix Back 0",
                   "SetAnimatedProperty Blend 50", "SetAnimatedProperty Effect Gain 100",
                   "SetAnimatedProperty Source Gain 100", "end", "end"}));
  EXPECT_FALSE(MixTakesInput());
  EXPECT_EQ(Of<NumberControl>(1000).Value(), 10.0);
  EXPECT_EQ(history.UndoDepth(), before + 1);
  EXPECT_EQ(history.UndoName(), "Reset");
  history.Undo();
  EXPECT_EQ(Get(PropertyId::Blur), 1.0);
  EXPECT_EQ(Get(PropertyId::SourceGain), 8.0);
  EXPECT_TRUE(MixTakesInput());
}

TEST_F(FullBlurPPGTest, ResetAppliesTheRuleItself) {
  Open();
  Of<ListControl>(1004).Choose(1);
  page->SetObjects(0, nullptr);
  Press(1008);
  EXPECT_FALSE(MixTakesInput()) << "without a notice";
}

TEST_F(FullBlurPPGTest, WritesKeysWhereThereAreKeys) {
  Open();
  Animate(PropertyId::Blur, 0.0, 100.0);
  site.time = 5.0;
  page->UpdateAnimatedControls(5.0);
  EXPECT_EQ(Of<NumberControl>(1000).Value(), 50.0);
  Of<NumberControl>(1000).Type("80");
  double value = 0.0;
  effect->GetValueAt(PropertyOf(PropertyId::Blur).guid, 5.0, &value);
  EXPECT_EQ(value, 80.0);
}

}  // namespace
}  // namespace vblur
