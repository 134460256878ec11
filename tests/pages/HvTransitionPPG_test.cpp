#include "pages/HvTransitionPPG.h"

#include "tests/pages/PageTest.h"

namespace vblur {
namespace {

using host::Calls;
using host::ListControl;
using host::NumberControl;

class HvTransitionPPGTest : public PageTest<HvTransitionPPG> {};

TEST_F(HvTransitionPPGTest, IsNamed) {
  ExpectNamed("transition", u"Transition", 52);
}

TEST_F(HvTransitionPPGTest, MapsItsControls) {
  ExpectControlMap(*page, "Vessin3.0",
                   {
                       {PropertyId::EffectScaling, 3, 5504, false, 0, 5511, 6504},
                       {PropertyId::FinishFadingOutFirstClip, 5, 5500, false, 0, 5501, 6500},
                       {PropertyId::StartFadingInSecondClip, 5, 5501, false, 0, 5503, 6501},
                       {PropertyId::TransitionRamping, 3, 5502, false, 0, 5505, 6502},
                       {std::nullopt, 0, 5503, true, 2, 5516},
                   });
  Open();
  ExpectVariablesFollow();
  EXPECT_EQ(site.dialog->Item(5503)->ToolTip(), u"Reset this page's values to their defaults.");
}

TEST_F(HvTransitionPPGTest, AgreesOnRangesWithItsDialogAndItsProperties) {
  ExpectRangesAgree();
}

TEST_F(HvTransitionPPGTest, SetsItsRanges) {
  const ForeignRanges ranges;
  Activate();
  ExpectRange(5500, 0.0, 100.0);
  ExpectRange(5501, 0.0, 100.0);
}

// Nothing is read before the first notice.
TEST_F(HvTransitionPPGTest, ShowsTheDefaultsUntilItIsRefreshed) {
  Put(PropertyId::TransitionRamping, 1.0);
  Put(PropertyId::EffectScaling, 2.0);
  Put(PropertyId::FinishFadingOutFirstClip, 55.0);
  EXPECT_EQ(Activate(), kOk);
  EXPECT_EQ(site.Taken(), Calls{"make dialog 52"});
  ExpectList(5502, 3, {u"Linear", u"Ramp In", u"Ramp Out", u"Ramp In and Out"});
  ExpectList(5504, 1, {u"Don't Scale Effect", u"Fade Effect In And Out", u"Cross Fade Effect"});
  EXPECT_EQ(Of<NumberControl>(5500).Value(), 0.0);
  page->Refresh();
  EXPECT_EQ(Of<ListControl>(5502).Text(), u"Ramp In");
  EXPECT_EQ(Of<ListControl>(5504).Text(), u"Cross Fade Effect");
  EXPECT_EQ(Of<NumberControl>(5500).Value(), 55.0);
}

TEST_F(HvTransitionPPGTest, LinksTheEffect) {
  ExpectLink();
}

TEST_F(HvTransitionPPGTest, LivesWithoutAnEffect) {
  ExpectToLiveWithoutEffect();
}

TEST_F(HvTransitionPPGTest, CountsInItsServer) {
  ExpectCounted();
}

TEST_F(HvTransitionPPGTest, WritesPlainValues) {
  Open();
  Of<NumberControl>(5500).Type("40");
  EXPECT_EQ(site.TakenChanges(), (Calls{"begin \"\"", "SetPlainProperty Finish Fading Out First Clip 40", "end"}));
  EXPECT_EQ(page->UpdateAnimatedControls(3.0), kOk);
  EXPECT_EQ(site.Taken(), Calls{}) << "none is animated";
}

TEST_F(HvTransitionPPGTest, ResetsInOneStepAndToACrossFade) {
  Open();
  Put(PropertyId::FinishFadingOutFirstClip, 1.0);
  Put(PropertyId::StartFadingInSecondClip, 2.0);
  Put(PropertyId::TransitionRamping, 0.0);
  Put(PropertyId::EffectScaling, 0.0);
  std::uint32_t suspended = 0;
  struct Watch : IDSPropertyNotify {
    explicit Watch(std::function<void()> then) : seen(std::move(then)) {}
    void OnPropertyChanged(const GUID&, const DSVariant*, std::uint32_t) override { seen(); }
    std::function<void()> seen;
  } watch([&] { suspended += OpenPage::SuspendedOf(*page); });
  effect->Advise(&watch);
  const std::size_t before = history.UndoDepth();
  site.Taken();
  Press(5503);
  effect->Unadvise(&watch);
  EXPECT_EQ(site.TakenChanges(),
            (Calls{"begin \"Reset\"", "begin \"Reset\"", "SetPlainProperty Finish Fading Out First Clip 100",
                   "SetPlainProperty Start Fading In Second Clip 0", "SetPlainProperty Transition Ramping 3",
                   "SetPlainProperty Effect Scaling 2", "end", "end"}));
  EXPECT_EQ(suspended, 4u) << "at each write";
  EXPECT_FALSE(page->IsSuspended());
  EXPECT_EQ(Of<ListControl>(5504).Text(), u"Cross Fade Effect");
  EXPECT_EQ(Of<NumberControl>(5500).Value(), 100.0);
  EXPECT_EQ(history.UndoDepth(), before + 1);
}

}  // namespace
}  // namespace vblur
