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

// What a page asks of its site to show all it has.
const Calls kReadsAll = {"GetAnimatedProperty 1 5", "GetPlainProperty 2 2.5", "GetPlainProperty 3 1",
                         "GetPlainProperty 4 0", "GetPlainProperty 4 0"};

class CDSPropertyPageTest : public EditingTest {};

TEST_F(CDSPropertyPageTest, KnowsControlsByTheNamesOfTheHost) {
  EXPECT_EQ(std::u16string(kControlNotify), u"DSCTLNOTIFY");
  EXPECT_EQ(std::u16string(kControlNotifyComplete), u"DSCTLNOTIFYCOMP");
  EXPECT_EQ(std::u16string(kControlScrub), u"DSCTLSCRUB");
  EXPECT_EQ(std::u16string(kControlToolTip), u"DSCTLTOOLTIP");
  EXPECT_EQ(std::u16string(kControlInterface), u"DSCTLIFACE");
  EXPECT_EQ(IDSNumberControl::kIid, MakeGuid("{8AE0F6B1-81D4-11CF-9218-00A024079957}"));
  EXPECT_EQ(IDSColourChip::kIid, MakeGuid("{68DA9860-91A6-11D0-8606-00A024079957}"));
  EXPECT_EQ(GUID_ALL_PROPERTIES, MakeGuid("{5B192010-2C0D-11D0-82AB-00A0243F1013}"));
  EXPECT_EQ(GUID_NO_PROPERTY, MakeGuid("{96BBD590-4EBD-11D0-82B5-00A0243F1013}"));
  EXPECT_EQ((std::array{VT_EMPTY, VT_I4, VT_R8, VT_BOOL}), (std::array<VARTYPE, 4>{0, 3, 5, 11}));
}

TEST_F(CDSPropertyPageTest, GivesTheInterfaceOfAControlBack) {
  Open();
  auto& number = Of<NumberControl>(kSizeId);
  const std::uint32_t before = number.AddRef();
  number.Type("3");
  object->PutValue(EditedObject::kSize, DSVariant::Of(4.0));
  EXPECT_EQ(number.AddRef(), before + 1);
}

TEST_F(CDSPropertyPageTest, AnswersForItsOwnInterfaceOnly) {
  void* found = this;
  EXPECT_EQ(page->QueryInterface(IDSPropertyPage::kIid, nullptr), kNullPointer);
  EXPECT_EQ(page->QueryInterface(IDSProperties::kIid, &found), kNoInterface);
  EXPECT_EQ(found, nullptr);
  for (const GUID& iid : {IDSPropertyPage::kIid, IUnknown::kIid}) {
    EXPECT_EQ(page->QueryInterface(iid, &found), kOk);
    EXPECT_EQ(found, static_cast<IDSPropertyPage*>(page.get()));
    EXPECT_EQ(page->Release(), 1u);
  }
}

TEST_F(CDSPropertyPageTest, TellsItsDialogTitleAndControls) {
  DSPageInfo info;
  EXPECT_EQ(page->GetPageInfo(nullptr), kNullPointer);
  EXPECT_EQ(page->GetPageInfo(&info), kOk);
  EXPECT_EQ(info.dialog, kDialog);
  EXPECT_EQ(std::u16string(info.title), u"The page");
  EXPECT_EQ(info.controls, page->GetControlMap());
  EXPECT_STREQ(info.controls->name, "test");
}

TEST_F(CDSPropertyPageTest, NeedsASiteThatMakesItsDialog) {
  EXPECT_EQ(page->Activate(), kFailed);
  EXPECT_EQ(page->Show(SW_SHOW), kFailed);
  EXPECT_EQ(page->Deactivate(), kFalse);
  page->SetSite(&site);
  Edit(*object);
  site.makesDialogs = false;
  EXPECT_EQ(page->Activate(), kFailed);
  EXPECT_EQ(site.Taken(), Calls{"make dialog 7"});
  object->PutValue(EditedObject::kChoice, DSVariant::Of(2));
  EXPECT_EQ(site.Taken(), Calls{}) << "no dialog, no notices";
  EXPECT_EQ(page->Deactivate(), kFalse);
}

TEST_F(CDSPropertyPageTest, MakesItsDialogOnceAndReadsAllVariables) {
  page->SetSite(&site);
  Edit(*object);
  EXPECT_EQ(page->GetDialog(), nullptr);
  EXPECT_EQ(page->Activate(), kOk);
  Calls expected = kReadsAll;
  expected.insert(expected.begin(), "make dialog 7");
  EXPECT_EQ(site.Taken(), expected);
  EXPECT_EQ(page->GetDialog(), site.dialog->Handle());
  EXPECT_EQ(page->GetHwndControl(kGoId), site.dialog->Item(kGoId)->Handle());
  EXPECT_EQ(page->size, 5.0);
  EXPECT_EQ(page->weight, 2.5);
  EXPECT_EQ(page->choice, 1);
  EXPECT_FALSE(page->tick);
  EXPECT_EQ(Of<NumberControl>(kSizeId).Value(), 5.0);
  EXPECT_EQ(page->Activate(), kFailed);
  EXPECT_EQ(site.Taken(), Calls{});
}

TEST_F(CDSPropertyPageTest, GoesAndComesBack) {
  Open();
  const auto first = site.dialog;
  EXPECT_EQ(page->Deactivate(), kOk);
  EXPECT_EQ(page->Deactivate(), kFalse);
  EXPECT_EQ(site.Taken(), Calls{"drop dialog"});
  EXPECT_EQ(page->GetDialog(), nullptr);
  EXPECT_FALSE(first->IsOpen());
  object->PutValue(EditedObject::kWeight, DSVariant::Of(9.0));
  EXPECT_EQ(page->weight, 2.5);
  EXPECT_EQ(page->Activate(), kOk);
  EXPECT_NE(page->GetDialog(), first->Handle());
  EXPECT_EQ(page->weight, 9.0);
  EXPECT_FALSE(site.dialog->IsVisible());
}

TEST_F(CDSPropertyPageTest, LeavesItsSiteWithItsDialog) {
  Open();
  EXPECT_EQ(page->SetSite(&site), kOk);
  EXPECT_EQ(site.Taken(), Calls{}) << "the same site";
  host::RecordingSite other;
  EXPECT_EQ(page->SetSite(&other), kOk);
  EXPECT_EQ(page->Site(), &other);
  EXPECT_EQ(site.Taken(), Calls{"drop dialog"});
  EXPECT_EQ(page->Activate(), kOk);
  EXPECT_EQ(other.Taken().front(), "make dialog 7");
  EXPECT_EQ(page->SetSite(nullptr), kOk);
  EXPECT_EQ(other.Taken(), Calls{"drop dialog"});
  EXPECT_EQ(page->Activate(), kFailed);
}

TEST_F(CDSPropertyPageTest, DropsItsDialogWhenItEnds) {
  Open();
  page.reset();
  EXPECT_EQ(site.Taken(), Calls{"drop dialog"});
  object->PutValue(EditedObject::kWeight, DSVariant::Of(9.0));
}

TEST_F(CDSPropertyPageTest, ShowsItsDialogInAllModesButOne) {
  Open();
  for (const std::uint32_t mode : {1u, 2u, 5u, 9u}) {
    EXPECT_EQ(page->Show(mode), kOk);
    EXPECT_EQ(site.Taken(), Calls{"show dialog"}) << mode;
  }
  EXPECT_EQ(page->Show(SW_HIDE), kOk);
  EXPECT_EQ(site.Taken(), Calls{"hide dialog"});
  EXPECT_EQ(page->Help(u"folder"), kFalse);
}

TEST_F(CDSPropertyPageTest, RefusesObjectsThatAreNone) {
  Edit(*object);
  IUnknown* const none[] = {UnknownOf(*object), nullptr};
  EXPECT_EQ(page->SetObjects(-1, none), kWrongArgument);
  EXPECT_EQ(page->SetObjects(1, nullptr), kWrongArgument);
  EXPECT_EQ(page->SetObjects(2, none), kNullPointer);
  EXPECT_EQ(page->InspectedObject(), UnknownOf(*object)) << "as before";
  EXPECT_EQ(page->SetObjects(0, nullptr), kOk);
  EXPECT_EQ(page->InspectedObject(), nullptr);
}

TEST_F(CDSPropertyPageTest, CountsItsObjects) {
  bool ended = false;
  object->onEnd = [&] { ended = true; };
  auto second = ComPtr<EditedObject>::Own(new EditedObject);
  IUnknown* const both[] = {UnknownOf(*second), UnknownOf(*object)};
  EXPECT_EQ(page->SetObjects(2, both), kOk);
  EXPECT_EQ(page->InspectedObject(), UnknownOf(*second)) << "the first";
  object.reset();
  EXPECT_FALSE(ended);
  page->SetObjects(1, both);
  EXPECT_TRUE(ended);
}

TEST_F(CDSPropertyPageTest, FollowsNoticesOfItsObject) {
  Open();
  object->PutValue(EditedObject::kTick, DSVariant::Of(1));
  EXPECT_EQ(site.Taken(), (Calls{"GetPlainProperty 4 1", "GetPlainProperty 4 1"})) << "two controls have it";
  EXPECT_TRUE(page->tick);
  EXPECT_TRUE(page->absent);
  EXPECT_TRUE(Of<CheckBoxControl>(kTickId).IsChecked());
  object->PutValue(EditedObject::kChoice, DSVariant::Of(2));
  EXPECT_EQ(Of<ListControl>(kChoiceId).Selected(), 2);
  object->PutValue(EditedObject::kWeight, DSVariant::Of(7.5));
  EXPECT_EQ(Of<NumberControl>(kWeightId).Value(), 7.5);
  EXPECT_EQ(page->weight, 7.5);
  object->PutCurve(EditedObject::kSize, {{{0.0, 1.0}, {4.0, 3.0}}, DSInterpolation::Linear});
  EXPECT_EQ(Of<NumberControl>(kSizeId).Value(), 1.0);
  site.Taken();
  page->PropertyChanged(GUID_NO_PROPERTY, nullptr);
  EXPECT_EQ(site.Taken(), Calls{});
  object->weight = 1.0;
  EXPECT_EQ(page->Refresh(), kOk);
  EXPECT_EQ(site.Taken(), (Calls{"GetAnimatedProperty 1 1", "GetPlainProperty 2 1", "GetPlainProperty 3 2",
                                 "GetPlainProperty 4 1", "GetPlainProperty 4 1"}));
  EXPECT_EQ(Of<NumberControl>(kWeightId).Value(), 1.0);
}

TEST_F(CDSPropertyPageTest, KeepsAVariableThatCannotBeRead) {
  Open();
  page->weight = 8.0;
  page->SetObjects(0, nullptr);
  EXPECT_EQ(page->Refresh(), kOk);
  EXPECT_EQ(page->weight, 8.0);
  EXPECT_EQ(Of<NumberControl>(kWeightId).Value(), 8.0) << "the control shows it all the same";
}

TEST_F(CDSPropertyPageTest, MovesAnimatedControlsWithTheTime) {
  Open();
  object->PutCurve(EditedObject::kSize, {{{0.0, 1.0}, {4.0, 3.0}}, DSInterpolation::Linear});
  object->weight = 9.0;
  site.Taken();
  site.time = 2.0;
  EXPECT_EQ(page->UpdateAnimatedControls(2.0), kOk);
  EXPECT_EQ(site.Taken(), Calls{"GetAnimatedProperty 1 2"});
  EXPECT_EQ(page->size, 2.0);
  EXPECT_EQ(Of<NumberControl>(kSizeId).Value(), 2.0);
  EXPECT_EQ(Of<NumberControl>(kWeightId).Value(), 2.5);
}

TEST_F(CDSPropertyPageTest, MarksWhatIsAnimated) {
  Open();
  const auto markAt = [&](double time) {
    site.time = time;
    page->UpdateAnimatedControls(time);
    return Of<NumberControl>(kSizeId).AnimationMark();
  };
  EXPECT_EQ(markAt(0.0), DSAnimationMark::None);
  object->PutCurve(EditedObject::kSize, {{{0.0, 1.0}, {4.0, 3.0}}, DSInterpolation::Linear});
  EXPECT_EQ(Of<NumberControl>(kSizeId).AnimationMark(), DSAnimationMark::Key);
  EXPECT_EQ(markAt(2.0), DSAnimationMark::Animated);
  EXPECT_EQ(markAt(4.0), DSAnimationMark::Key);
  object->RemoveCurve(EditedObject::kSize);
  EXPECT_EQ(Of<NumberControl>(kSizeId).AnimationMark(), DSAnimationMark::None);
  EXPECT_EQ(Of<NumberControl>(kWeightId).AnimationMark(), DSAnimationMark::None);
}

TEST_F(CDSPropertyPageTest, OutlivesItsOwnAction) {
  Open();
  bool ended = false;
  page->onEnd = [&] { ended = true; };
  page->onAction = [&] {
    page->SetSite(nullptr);
    page.reset();
    EXPECT_FALSE(ended);
  };
  const auto dialog = site.dialog;
  dynamic_cast<ButtonControl&>(*dialog->Item(kGoId)).Press();
  EXPECT_TRUE(ended);
  EXPECT_EQ(site.Taken(), (Calls{"begin \"Go!\"", "drop dialog", "end"})) << "the step ends all the same";
}

TEST_F(CDSPropertyPageTest, EndsItsStepsOnTheSiteThatItLeaves) {
  Open();
  host::RecordingSite other;
  page->onAction = [&] {
    page->SetSite(&other);
    page->SetPlainProperty(EditedObject::kWeight, DSVariant::Of(1.0), nullptr, kUndoStep);
  };
  Of<ButtonControl>(kGoId).Press();
  EXPECT_EQ(site.Taken(), (Calls{"begin \"Go!\"", "drop dialog", "end"}));
  EXPECT_EQ(other.Taken(), (Calls{"begin", "end", "SetPlainProperty 2 1"}));
  page->SetSite(nullptr);
}

TEST_F(CDSPropertyPageTest, OutlivesANoticeThatEndsIt) {
  struct Closing : host::PageObserver {
    explicit Closing(std::function<void()> then) : close(std::move(then)) {}
    void OnWindowChanged(host::PageWindow&) override { close(); }
    std::function<void()> close;
  };
  Open();
  const auto dialog = site.dialog;
  bool ended = false;
  page->onEnd = [&] { ended = true; };
  Closing closing([&] {
    if (!page) return;
    page->SetSite(nullptr);
    page.reset();
    EXPECT_FALSE(ended);
  });
  dialog->Item(kTickId)->AddObserver(closing);
  object->PutValue(EditedObject::kTick, DSVariant::Of(1));
  EXPECT_TRUE(ended);
  dialog->Item(kTickId)->RemoveObserver(closing);
}

TEST_F(CDSPropertyPageTest, ListensToTheObjectThatItHasNow) {
  Open();
  auto second = ComPtr<EditedObject>::Own(new EditedObject);
  second->weight = 9.0;
  EXPECT_EQ(Edit(*second), kOk);
  EXPECT_EQ(page->weight, 2.5) << "until it is refreshed";
  object->PutValue(EditedObject::kWeight, DSVariant::Of(1.0));
  EXPECT_EQ(page->weight, 2.5);
  second->PutValue(EditedObject::kWeight, DSVariant::Of(8.0));
  EXPECT_EQ(page->weight, 8.0);
  Of<NumberControl>(kWeightId).Type("7");
  EXPECT_EQ(second->weight, 7.0);
  EXPECT_EQ(object->weight, 1.0);
}

TEST_F(CDSPropertyPageTest, KeepsAnObjectUntilItIsWritten) {
  Open();
  bool ended = false;
  object->onEnd = [&] { ended = true; };
  struct Leaving : IDSPropertyNotify {
    void OnPropertyChanged(const GUID&, const DSVariant*, std::uint32_t) override {
      page->SetObjects(0, nullptr);
      EXPECT_FALSE(*ended);
    }
    EditingPage* page = nullptr;
    const bool* ended = nullptr;
  } leaving;
  leaving.page = page.get();
  leaving.ended = &ended;
  object->Advise(&leaving);
  object.reset();
  EXPECT_EQ(page->SetPlainProperty(EditedObject::kWeight, DSVariant::Of(1.0), nullptr, kUndoStep), kOk);
  EXPECT_TRUE(ended);
}

TEST_F(CDSPropertyPageTest, MayHaveNoControls) {
  page->hasMap = false;
  Open();
  EXPECT_EQ(page->Refresh(), kOk);
  EXPECT_EQ(page->UpdateAnimatedControls(1.0), kOk);
  EXPECT_EQ(page->SetControlFromBoundVariable(kSizeId), kWrongArgument);
  Of<ButtonControl>(kGoId).Press();
  EXPECT_EQ(Of<NumberControl>(kSizeId).ToolTip(), u"");
  EXPECT_EQ(site.Taken(), Calls{});
  DSPageInfo info;
  page->GetPageInfo(&info);
  EXPECT_EQ(info.controls, nullptr);
}

TEST_F(CDSPropertyPageTest, ReadsAndWritesNothingWithoutAnObject) {
  page->SetSite(&site);
  DSVariant value = DSVariant::Of(3.0);
  EXPECT_EQ(page->SetPlainProperty(EditedObject::kWeight, value, nullptr, kUndoStep), kFailed);
  EXPECT_EQ(page->SetAnimatedProperty(EditedObject::kSize, value, nullptr, -1.0, kUndoStep), kFailed);
  EXPECT_EQ(page->GetPlainProperty(EditedObject::kWeight, &value, nullptr), kFailed);
  EXPECT_EQ(page->GetAnimatedProperty(EditedObject::kSize, &value, nullptr, -1.0), kFailed);
  EXPECT_EQ(value.number, 3.0);
  EXPECT_EQ(site.Taken(), Calls{});
  EXPECT_EQ(page->GetPlainProperty(EditedObject::kWeight, nullptr, nullptr), kNullPointer);
  EXPECT_EQ(page->GetAnimatedProperty(EditedObject::kSize, nullptr, nullptr, -1.0), kNullPointer);
  // An object without properties is none.
  struct Bare final : IUnknown {
    HRESULT QueryInterface(const GUID&, void** result) override {
      *result = nullptr;
      return kNoInterface;
    }
    std::uint32_t AddRef() override { return 1; }
    std::uint32_t Release() override { return 1; }
  } bare;
  IUnknown* const unknown = &bare;
  EXPECT_EQ(page->SetObjects(1, &unknown), kOk);
  EXPECT_EQ(page->GetPlainProperty(EditedObject::kWeight, &value, nullptr), kFailed);
  EXPECT_EQ(page->Activate(), kOk);
  page->SetObjects(0, nullptr);
}

TEST_F(CDSPropertyPageTest, WritesAsAStepOrIntoTheOpenBracket) {
  page->SetSite(&site);
  Edit(*object);
  const DSVariant nine = DSVariant::Of(9.0);
  EXPECT_EQ(page->SetPlainProperty(EditedObject::kWeight, nine, nullptr, kUndoStep), kOk);
  EXPECT_EQ(site.Taken(), (Calls{"begin", "end", "SetPlainProperty 2 9"}));
  EXPECT_EQ(page->SetPlainProperty(EditedObject::kWeight, nine, nullptr, kUndoBracket), kOk);
  EXPECT_EQ(site.Taken(), Calls{"SetPlainProperty 2 9"});
  EXPECT_EQ(page->SetAnimatedProperty(EditedObject::kSize, nine, nullptr, 2.0, kUndoBracket), kOk);
  EXPECT_EQ(site.Taken(), Calls{"SetAnimatedProperty 1 9 at 2"});
  EXPECT_EQ(page->SetPlainProperty(GUID_NO_PROPERTY, nine, nullptr, kUndoBracket), kWrongArgument);
  EXPECT_EQ(site.Taken(), Calls{"SetPlainProperty nothing 9 fails"});
}

TEST_F(CDSPropertyPageTest, TakesTheSitesTimeForMinusOne) {
  Edit(*object);
  object->PutCurve(EditedObject::kSize, {{{0.0, 1.0}, {4.0, 3.0}}, DSInterpolation::Linear});
  DSVariant value;
  EXPECT_EQ(page->GetAnimatedProperty(EditedObject::kSize, &value, nullptr, -1.0), kOk);
  EXPECT_EQ(value.number, 1.0) << "0 without a site";
  page->SetSite(&site);
  site.time = 4.0;
  EXPECT_EQ(page->GetAnimatedProperty(EditedObject::kSize, &value, nullptr, -1.0), kOk);
  EXPECT_EQ(value.number, 3.0);
  EXPECT_EQ(page->GetAnimatedProperty(EditedObject::kSize, &value, nullptr, 2.0), kOk);
  EXPECT_EQ(value.number, 2.0);
  page->SetAnimatedProperty(EditedObject::kSize, DSVariant::Of(7.0), nullptr, -1.0, kUndoStep);
  EXPECT_EQ(object->KeyAt(4.0), 7.0);
  page->SetAnimatedProperty(EditedObject::kSize, DSVariant::Of(8.0), nullptr, 1.0, kUndoStep);
  EXPECT_EQ(object->KeyAt(1.0), 8.0);
}

TEST_F(CDSPropertyPageTest, ShowsABoundVariableOnItsControl) {
  EXPECT_EQ(page->SetControlFromBoundVariable(kSizeId), kFalse) << "no dialog";
  Open();
  page->size = 12.0;
  page->choice = 0;
  page->tick = true;
  EXPECT_EQ(page->SetControlFromBoundVariable(kSizeId), kOk);
  EXPECT_EQ(page->SetControlFromBoundVariable(kChoiceId), kOk);
  EXPECT_EQ(page->SetControlFromBoundVariable(kTickId), kOk);
  EXPECT_EQ(Of<NumberControl>(kSizeId).Value(), 12.0) << "beyond the range too";
  EXPECT_EQ(Of<ListControl>(kChoiceId).Text(), u"zero");
  EXPECT_TRUE(Of<CheckBoxControl>(kTickId).IsChecked());
  EXPECT_EQ(page->SetControlFromBoundVariable(kAbsentId), kFalse);
  EXPECT_EQ(page->SetControlFromBoundVariable(kGoId), kWrongArgument) << "no variable";
  EXPECT_EQ(page->SetControlFromBoundVariable(kStrangerId), kWrongArgument);
  EXPECT_EQ(site.Taken(), Calls{}) << "nothing is read";
}

}  // namespace
}  // namespace vblur
