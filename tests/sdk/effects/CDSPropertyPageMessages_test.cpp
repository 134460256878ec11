// What a page does at the messages of its controls.
#include "platform/PageControls.h"
#include "tests/sdk/effects/EditingPage.h"

namespace vblur {
namespace {

using namespace editing_page;
using host::ButtonControl;
using host::Calls;
using host::CheckBoxControl;
using host::ListControl;
using host::NumberControl;

class CDSPropertyPageMessagesTest : public EditingTest {};

// The variable, then the property, then the action, which finds both changed.
TEST_F(CDSPropertyPageMessagesTest, AChangeOfAControlIsAStepOfVariablePropertyAndAction) {
  Open();
  page->onAction = [&] {
    site.Note("act " + host::FormatNumber(page->size) + " " + host::FormatNumber(object->size) + " " +
              host::FormatNumber(page->weight) + " " + std::to_string(page->choice) + std::to_string(object->choice) +
              std::to_string(page->tick) + std::to_string(object->tick));
  };
  Of<NumberControl>(kSizeId).Type("6");
  EXPECT_EQ(site.TakenChanges(), (Calls{"begin \"\"", "SetAnimatedProperty 1 6", "end"}));
  EXPECT_EQ(object->size, 6.0);
  Of<NumberControl>(kWeightId).Type("7");
  EXPECT_EQ(site.Taken(),
            (Calls{"begin \"\"", "GetPlainProperty 2 7", "SetPlainProperty 2 7", "act 6 6 7 1100", "end"}));
  Of<ListControl>(kChoiceId).Choose(2);
  EXPECT_EQ(site.Taken(),
            (Calls{"begin \"\"", "GetPlainProperty 3 2", "SetPlainProperty 3 2", "act 6 6 7 2200", "end"}));
  Of<CheckBoxControl>(kTickId).Toggle();
  EXPECT_EQ(site.Taken(), (Calls{"begin \"\"", "GetPlainProperty 4 1", "GetPlainProperty 4 1", "SetPlainProperty 4 1",
                                 "act 6 6 7 2211", "end"}));
  EXPECT_EQ(object->tick, 1);
}

TEST_F(CDSPropertyPageMessagesTest, AButtonIsAnActionAlone) {
  Open();
  page->onAction = [&] { site.Note("act"); };
  Of<ButtonControl>(kGoId).Press();
  EXPECT_EQ(site.Taken(), (Calls{"begin \"Go!\"", "act", "end"}));
  Of<ButtonControl>(kIdleId).Press();
  EXPECT_EQ(site.Taken(), (Calls{"begin \"Idle\"", "end"}));
  Of<NumberControl>(kLocalId).Type("4");
  EXPECT_EQ(site.Taken(), (Calls{"begin \"\"", "act", "end"})) << "a variable without a property";
  EXPECT_EQ(page->local, 4.0);
}

TEST_F(CDSPropertyPageMessagesTest, WritesAKeyAtTheTimeWhereThereAreKeys) {
  Open();
  site.time = 3.0;
  Of<NumberControl>(kSizeId).Type("6");
  EXPECT_EQ(object->size, 6.0);
  EXPECT_EQ(object->KeyAt(3.0), -99.0);
  object->PutCurve(EditedObject::kSize, {{{0.0, 1.0}}, DSInterpolation::Linear});
  Of<NumberControl>(kSizeId).Type("8");
  EXPECT_EQ(object->KeyAt(3.0), 8.0);
  EXPECT_EQ(object->KeyAt(0.0), 1.0);
  EXPECT_EQ(object->size, 6.0);
  EXPECT_EQ(Of<NumberControl>(kSizeId).AnimationMark(), DSAnimationMark::Key);
}

TEST_F(CDSPropertyPageMessagesTest, PassesOverMessagesOfOthers) {
  Open();
  page->onAction = [&] { site.Note("act"); };
  Of<ButtonControl>(kStrangerId).Press();
  EXPECT_EQ(page->lastNotification.controlId, kStrangerId) << "noted, since the user did it";
  EXPECT_EQ(Send(WM_COMMAND, kAbsentId), 0);
  EXPECT_EQ(Send(WM_COMMAND, 999), 0);
  EXPECT_EQ(page->lastNotification.controlId, 999);
  EXPECT_EQ(Send(WM_SETTEXT, kGoId), 0);
  EXPECT_EQ(Send(0, kGoId), 0);
  EXPECT_EQ(page->lastNotification.controlId, 999) << "not of a user";
  EXPECT_EQ(Send(RegisterWindowMessageW(kControlNotifyComplete), kGoId), 0);
  EXPECT_EQ(page->lastNotification.message, RegisterWindowMessageW(kControlNotifyComplete));
  EXPECT_EQ(site.Taken(), Calls{});
  EXPECT_FALSE(page->absent);
}

TEST_F(CDSPropertyPageMessagesTest, TakesTheIdFromTheLowerHalfOfACommand) {
  Open();
  page->onAction = [&] { site.Note("act"); };
  page->OnDialogMessage(WM_COMMAND, static_cast<WPARAM>(kGoId) | static_cast<WPARAM>(CBN_SELCHANGE) << 16, 0);
  EXPECT_EQ(site.Taken(), (Calls{"begin \"Go!\"", "act", "end"}));
  EXPECT_EQ(page->lastNotification.message, WM_COMMAND);
  EXPECT_EQ(page->lastNotification.controlId, kGoId);
}

TEST_F(CDSPropertyPageMessagesTest, DoesNothingAtMessagesWithoutADialog) {
  page->onAction = [&] { site.Note("act"); };
  Edit(*object);
  const UINT scrub = RegisterWindowMessageW(kControlScrub);
  for (IDSPageSite* const each : {static_cast<IDSPageSite*>(nullptr), static_cast<IDSPageSite*>(&site)}) {
    page->SetSite(each);
    Send(WM_COMMAND, kGoId);
    Send(RegisterWindowMessageW(kControlNotify), kSizeId);
    Send(scrub, kSizeId, 1);
    Send(scrub, kSizeId, 0);
  }
  EXPECT_EQ(site.Taken(), Calls{});
}

TEST_F(CDSPropertyPageMessagesTest, HasATipForEachControlOfItsMap) {
  Open();
  EXPECT_EQ(Of<NumberControl>(kSizeId).ToolTip(), u"How large it is.");
  EXPECT_EQ(Of<NumberControl>(kWeightId).ToolTip(), u"") << "no such text";
  EXPECT_EQ(Of<ButtonControl>(kStrangerId).ToolTip(), u"");
  EXPECT_EQ(page->lastNotification.message, 0u) << "a tip is no deed";
  std::array<char16_t, 4> room{};
  const DSToolTipText text{room.data(), 4};
  const UINT toolTip = RegisterWindowMessageW(kControlToolTip);
  EXPECT_EQ(Send(toolTip, kSizeId, reinterpret_cast<LPARAM>(&text)), 3);
  EXPECT_EQ(std::u16string(room.data()), u"How");
  EXPECT_EQ(Send(toolTip, kSizeId, 0), 0);
}

TEST_F(CDSPropertyPageMessagesTest, AScrubIsOneStep) {
  Open();
  auto& size = Of<NumberControl>(kSizeId);
  size.BeginScrub();
  EXPECT_EQ(site.Taken(), Calls{"begin"});
  size.Scrub(1);
  size.Scrub(1);
  EXPECT_EQ(site.TakenChanges(),
            (Calls{"begin \"\"", "SetAnimatedProperty 1 6", "end", "begin \"\"", "SetAnimatedProperty 1 7", "end"}));
  size.EndScrub();
  EXPECT_EQ(site.Taken(), Calls{"end"});
}

TEST_F(CDSPropertyPageMessagesTest, BalancesScrubs) {
  Open();
  const UINT scrub = RegisterWindowMessageW(kControlScrub);
  Send(scrub, kSizeId, 0);
  EXPECT_EQ(site.Taken(), Calls{}) << "none has begun";
  Send(scrub, kSizeId, 1);
  Send(scrub, kWeightId, 1);
  EXPECT_EQ(site.Taken(), Calls{"begin"});
  Send(scrub, kSizeId, 0);
  Send(scrub, kWeightId, 0);
  EXPECT_EQ(site.Taken(), Calls{"end"});
  Send(scrub, kSizeId, 1);
  page->Deactivate();
  EXPECT_EQ(site.Taken(), (Calls{"begin", "end", "drop dialog"}));
  EXPECT_EQ(page->Activate(), kOk);
  site.Taken();
  Send(scrub, kSizeId, 1);
  EXPECT_EQ(site.Taken(), Calls{"begin"}) << "not taken for the last one";
}

TEST_F(CDSPropertyPageMessagesTest, RecordsNothingWithoutAHistory) {
  Open();
  site.hasUndo = false;
  auto& size = Of<NumberControl>(kSizeId);
  size.BeginScrub();
  size.Scrub(1);
  size.EndScrub();
  EXPECT_EQ(site.TakenChanges(), Calls{"SetAnimatedProperty 1 6"});
  page->SetPlainProperty(EditedObject::kWeight, DSVariant::Of(1.0), nullptr, kUndoStep);
  EXPECT_EQ(site.TakenChanges(), Calls{"SetPlainProperty 2 1"});
}

}  // namespace
}  // namespace vblur
