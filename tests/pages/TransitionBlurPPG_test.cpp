#include "pages/TransitionBlurPPG.h"

#include "tests/pages/PageTest.h"

namespace vblur {
namespace {

using host::Calls;
using host::ListControl;
using host::NumberControl;

class TransitionBlurPPGTest : public PageTest<TransitionBlurPPG> {};

TEST_F(TransitionBlurPPGTest, IsNamed) {
  ExpectNamed("TransitionBlurPPG", u"V_Blur", 2);
}

TEST_F(TransitionBlurPPGTest, MapsItsControls) {
  ExpectControlMap(*page, "Vessin4.3",
                   {
                       {PropertyId::Method, 3, 1012, false, 16, 1018, 2012},
                       {PropertyId::Channels, 3, 1011, false, 16, 1005, 2011},
                       {PropertyId::Blur, 5, 1009, false, 1, 1001, 2009},
                       {PropertyId::Aspect, 5, 1010, false, 1, 1003, 2010},
                       {std::nullopt, 0, 1013, true, 18, 1053},
                   });
  Open();
  ExpectVariablesFollow();
  EXPECT_EQ(site.dialog->Item(1013)->ToolTip(), u"Reset this page's values to their defaults.");
}

TEST_F(TransitionBlurPPGTest, AgreesOnRangesWithItsDialogAndItsProperties) {
  ExpectRangesAgree();
}

TEST_F(TransitionBlurPPGTest, SetsItsRanges) {
  const ForeignRanges ranges;
  Activate();
  ExpectRange(1009, 0.0, 720.0);
  ExpectRange(1010, -100.0, 100.0);
}

TEST_F(TransitionBlurPPGTest, FillsItsListsAndShowsTheDefaults) {
  Put(PropertyId::Channels, 10.0);
  Put(PropertyId::Method, 1.0);
  Activate();
  ExpectList(1011, 1,
             {u"RGB", u"RGBA", u"Grey", u"Red", u"Green", u"Blue", u"Alpha", u"Luminance", u"Chroma", u"U", u"V"});
  ExpectList(1012, 0, {u"Blur", u"Sharpen"});
  page->Refresh();
  EXPECT_EQ(Of<ListControl>(1011).Text(), u"V");
  EXPECT_EQ(Of<ListControl>(1012).Text(), u"Sharpen");
}

TEST_F(TransitionBlurPPGTest, ReadsItsPropertiesAsItOpens) {
  Put(PropertyId::Aspect, -44.0);
  Activate();
  EXPECT_EQ(Of<NumberControl>(1010).Value(), -44.0);
}

TEST_F(TransitionBlurPPGTest, LinksTheEffect) {
  ExpectLink();
}

TEST_F(TransitionBlurPPGTest, LivesWithoutAnEffect) {
  ExpectToLiveWithoutEffect();
}

TEST_F(TransitionBlurPPGTest, CountsInItsServer) {
  ExpectCounted();
}

TEST_F(TransitionBlurPPGTest, HasNoRuleForWhatItLacks) {
  Open();
  Put(PropertyId::MixBack, 2.0);
  EXPECT_EQ(site.Taken(), Calls{});
  for (const auto& item : site.dialog->Items())
    EXPECT_TRUE(item->IsEnabled());
}

TEST_F(TransitionBlurPPGTest, ResetsInOneStep) {
  Open();
  Put(PropertyId::Blur, 1.0);
  Put(PropertyId::MixBack, 2.0);
  Of<ListControl>(1011).Choose(0);
  const std::size_t before = history.UndoDepth();
  site.Taken();
  Press(1013);
  EXPECT_EQ(site.TakenChanges(),
            (Calls{"begin \"Reset\"", "begin \"Reset\"", "SetAnimatedProperty Blur 10", "SetAnimatedProperty Aspect 0",
                   "SetPlainProperty Channels 1", "SetPlainProperty Method 0", "end", "end"}));
  EXPECT_EQ(Of<ListControl>(1011).Text(), u"RGBA");
  EXPECT_EQ(history.UndoDepth(), before + 1);
  EXPECT_EQ(Get(PropertyId::MixBack), 2.0) << "not of this page";
}

}  // namespace
}  // namespace vblur
