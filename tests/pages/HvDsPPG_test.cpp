#include "tests/pages/OpenedManuals.h"
#include "tests/pages/PlainPage.h"

namespace vblur {
namespace {

using namespace plain_page;
using host::ButtonControl;
using host::Calls;
using host::ListControl;
using host::NumberControl;

class HvDsPPGTest : public PageTest<PlainPage> {
 protected:
  void Link() {
    page->effect = static_cast<Blur*>(page->QueryEffect(kBlurObject));
    page->ConnectOverlay();
  }
};

TEST_F(HvDsPPGTest, BeginsWithoutAnEffect) {
  EXPECT_EQ(page->effect, nullptr);
  EXPECT_STREQ(page->pageName.get(), "plain");
  EXPECT_EQ(page->undoStyle, 1);
  EXPECT_EQ(page->suspended, 0u);
  EXPECT_EQ(page->shown, 0);
  EXPECT_EQ(page->changingProperty, nullptr);
  EXPECT_EQ(page->changingValue, nullptr);
  EXPECT_EQ(page->lastNotification.message, 0u);
  DSPageInfo info;
  page->GetPageInfo(&info);
  EXPECT_EQ(info.dialog, kDialog);
  EXPECT_EQ(std::u16string(info.title), u"Plain");
  EXPECT_EQ(page->GetResourceInstance(), ModuleHandle());
}

TEST_F(HvDsPPGTest, CopiesItsName) {
  std::string name = "given";
  const auto named = ComPtr<PlainPage>::Own(new PlainPage(name.c_str()));
  name[0] = 'd';
  EXPECT_STREQ(named->pageName.get(), "given");
  const auto nameless = ComPtr<PlainPage>::Own(new PlainPage(nullptr));
  EXPECT_EQ(nameless->pageName.get(), nullptr);
}

// Twice, and the effect is told in between.
TEST_F(HvDsPPGTest, ShowsTwiceAroundTheEffectsNotice) {
  Activate();
  Link();
  effect->onShown = [&](const std::string& name) { site.Note(name + " " + std::to_string(page->shown)); };
  site.Taken();
  for (const std::uint32_t mode : {1u, 5u}) {
    EXPECT_EQ(page->Show(mode), kOk);
    EXPECT_EQ(site.Taken(), (Calls{"show dialog", "plain 1", "show dialog"})) << mode;
    EXPECT_EQ(page->shown, 1);
  }
  EXPECT_EQ(page->Show(0), kOk);
  EXPECT_EQ(site.Taken(), (Calls{"hide dialog", "hide dialog"}));
  EXPECT_EQ(page->shown, 0);
  for (const std::uint32_t mode : {2u, 3u, 4u, 6u, 9u}) {
    page->shown = 1;
    EXPECT_EQ(page->Show(mode), kOk);
    EXPECT_EQ(site.Taken(), (Calls{"show dialog", "show dialog"})) << mode;
    EXPECT_EQ(page->shown, 0) << mode;
  }
}

TEST_F(HvDsPPGTest, ShowsWithoutAnEffect) {
  Activate();
  site.Taken();
  EXPECT_EQ(page->Show(5), kOk);
  EXPECT_EQ(site.Taken(), (Calls{"show dialog", "show dialog"}));
  EXPECT_TRUE(page->IsShown());
}

TEST_F(HvDsPPGTest, StopsAtTheFirstFailureToShow) {
  Activate();
  Link();
  int told = 0;
  effect->onShown = [&](const std::string&) { ++told; };
  page->Deactivate();
  page->shown = 1;
  EXPECT_EQ(page->Show(5), kFailed);
  EXPECT_EQ(told, 0);
  EXPECT_EQ(page->shown, 1) << "as before";
}

TEST_F(HvDsPPGTest, ReturnsTheSecondFailureToShow) {
  Activate();
  Link();
  effect->onShown = [&](const std::string&) { page->Deactivate(); };
  EXPECT_EQ(page->Show(5), kFailed);
  EXPECT_EQ(page->shown, 1);
}

TEST_F(HvDsPPGTest, HelpsWithTheManual) {
  const OpenedManuals manuals;
  EXPECT_EQ(page->Help(u"folder"), kOk);
  Activate();
  Link();
  EXPECT_EQ(page->Help(nullptr), kOk);
  EXPECT_EQ(manuals.After(2), std::vector(2, manuals.Place()));
}

TEST_F(HvDsPPGTest, SetsTheRangeOfNumberControlsOnly) {
  page->SetNumberRange(kSize, -5.0, 5.5);
  Activate();
  page->SetNumberRange(kSize, -5.0, 5.5);
  ExpectRange(kSize, -5.0, 5.5);
  ExpectRange(kFinish, 0.0, 10.0);
  for (const std::int32_t id : {kChip, kText, kGo, kAbsent, -1})
    page->SetNumberRange(id, 1.0, 2.0);
  page->SetNumberRange(kFinish, 2.0, 1.0);
  ExpectRange(kFinish, 0.0, 10.0);
  page->SetNumberRange(Row(kSize, PropertyId::Aspect));
  ExpectRange(kSize, -100.0, 100.0);
}

TEST_F(HvDsPPGTest, GivesTheInterfaceOfAControlBack) {
  Activate();
  auto& number = Of<NumberControl>(kSize);
  const std::uint32_t before = number.AddRef();
  page->SetNumberRange(kSize, 0.0, 1.0);
  EXPECT_EQ(number.AddRef(), before + 1);
}

TEST_F(HvDsPPGTest, FillsLists) {
  ValueControl<std::int32_t> bare;
  ValueControl<std::int32_t> absent(*page, Row(kAbsent, PropertyId::Channels));
  page->ClearList(page->channels);
  page->AddListString(page->channels, 2, true);
  Activate();
  page->AddListString(page->channels, 2, true);
  ExpectList(kChannels, 0, {u"first"});
  page->AddListString(page->channels, 3, false);
  ExpectList(kChannels, 0, {u"first", u"second"});
  page->AddListString(page->channels, 3, true);
  ExpectList(kChannels, 1, {u"first", u"second", u"second"});
  page->AddListString(page->channels, 77, true);
  page->AddListString(page->channels, 4, true);
  page->AddListString(absent, 2, true);
  page->AddListString(bare, 2, true);
  page->ClearList(absent);
  page->ClearList(bare);
  bare.controlId = kChannels;
  page->ClearList(bare);
  ExpectList(kChannels, 1, {u"first", u"second", u"second"});
  page->ClearList(page->channels);
  EXPECT_EQ(Of<ListControl>(kChannels).Entries().size(), 0u);
  page->AddListString(page->channels, 5, true);
  ExpectList(kChannels, 0, {std::u16string(255, u'x')});
}

TEST_F(HvDsPPGTest, SetsTextsOfEightBits) {
  page->SetControlText(kText, "before");
  Activate();
  page->SetControlText(kText, "caf\xE9");
  EXPECT_EQ(TextOf(kText), u"caf\u00E9");
  page->SetControlText(kText, nullptr);
  page->SetControlText(kAbsent, "other");
  EXPECT_EQ(TextOf(kText), u"caf\u00E9");
  page->SetControlText(kText, std::string(2047, 'a').c_str());
  EXPECT_EQ(TextOf(kText), std::u16string(2047, u'a'));
  page->SetControlText(kText, (std::string(2047, 'b') + "c").c_str());
  EXPECT_EQ(TextOf(kText), std::u16string(2047, u'b'));
  page->SetControlText(kText, "");
  EXPECT_EQ(TextOf(kText), u"");
}

TEST_F(HvDsPPGTest, EnablesAControlWithPageIdAndWindow) {
  page->Enable(page->size, false);
  Activate();
  EXPECT_TRUE(IsEnabled(kSize));
  page->Enable(page->size, false);
  EXPECT_FALSE(IsEnabled(kSize));
  EXPECT_TRUE(IsEnabled(kFinish));
  ValueControl<double> bare;
  bare.controlId = kSize;
  page->Enable(bare, true);
  page->Enable(ValueControl<double>(*page, Row(kAbsent, PropertyId::Blur)), true);
  page->Enable(ValueControl<double>(*page, Row(0, PropertyId::Blur)), true);
  EXPECT_FALSE(IsEnabled(kSize));
  page->Enable(page->size, true);
  EXPECT_TRUE(IsEnabled(kSize));
}

TEST_F(HvDsPPGTest, WritesOneStepBetweenBeginAndEnd) {
  Open();
  page->BeginUndo();
  EXPECT_EQ(page->undoStyle, 2);
  page->finish.Set(40.0);
  page->channels.Set(3);
  page->EndUndo();
  EXPECT_EQ(page->undoStyle, 1);
  EXPECT_EQ(site.TakenChanges(), (Calls{"begin \"\"", "SetPlainProperty Finish Fading Out First Clip 40",
                                        "SetPlainProperty Channels 3", "end"}));
  EXPECT_EQ(history.UndoDepth(), 1u);
  page->EndUndo();
  EXPECT_EQ(site.Taken(), Calls{}) << "none is open";
  page->undoStyle = 2;
  page->EndUndo();
  EXPECT_EQ(page->undoStyle, 1);
}

TEST_F(HvDsPPGTest, NamesItsStepAfterTheButton) {
  Open();
  page->onGo = [&] {
    page->BeginUndo();
    page->EndUndo();
  };
  Press(kGo);
  EXPECT_EQ(site.Taken(), (Calls{"begin \"Go!\"", "begin \"Go!\"", "end", "end"}));
}

TEST_F(HvDsPPGTest, FindsTheEffectBehindItsObject) {
  EXPECT_EQ(page->QueryEffect(kBlurObject), nullptr) << "no object";
  EXPECT_EQ(page->ConnectOverlay(), nullptr);
  Activate();
  const std::uint32_t before = OthersHold();
  EXPECT_EQ(page->QueryEffect(kBlurObject), static_cast<Blur*>(effect.get()));
  EXPECT_EQ(OthersHold(), before + 1);
  effect->Release();
  page->effect = static_cast<HvDsEffect*>(page->QueryEffect(kDsEffectObject));
  EXPECT_EQ(page->effect, static_cast<HvDsEffect*>(effect.get()));
  page->effect = static_cast<HvDsEffect*>(page->QueryEffect(kDsEffectObject));
  EXPECT_EQ(OthersHold(), before + 1) << "the earlier one is given back";
  EXPECT_EQ(page->QueryEffect(classes::kHelpPPG), nullptr) << "it is no such object";
  EXPECT_EQ(page->effect, nullptr);
  EXPECT_EQ(OthersHold(), before);
}

TEST_F(HvDsPPGTest, LinksTheEffectToTheViewerOfItsObject) {
  Activate();
  page->effect = static_cast<HvDsEffect*>(page->QueryEffect(kDsEffectObject));
  HvTInteract* const tool = page->ConnectOverlay();
  ASSERT_NE(tool, nullptr);
  EXPECT_EQ(tool, effect->OverlayTool());
  EXPECT_TRUE(tool->Linked());
  EXPECT_EQ(viewer->ToolCount(), 1u);
  page->DisconnectEffect();
  EXPECT_EQ(effect->OverlayTool(), nullptr);
  EXPECT_EQ(viewer->ToolCount(), 0u);
  page->DisconnectEffect();
  EXPECT_EQ(page->effect, nullptr);
}

TEST_F(HvDsPPGTest, HasNoToolForPaintOrWithoutItsClass) {
  UseAs(*effect, host::EffectKind::Paint);
  Activate();
  page->effect = static_cast<HvDsEffect*>(page->QueryEffect(kDsEffectObject));
  EXPECT_EQ(page->ConnectOverlay(), nullptr);
  UseAs(*effect, host::EffectKind::Filter);
  ToolServer::offers = false;
  EXPECT_EQ(page->ConnectOverlay(), nullptr);
  EXPECT_EQ(page->Show(5), kOk);
  page->DisconnectEffect();
}

TEST_F(HvDsPPGTest, SeesAChangeWhileItIsReported) {
  const DSVariant value = DSVariant::Of(1.0);
  const GUID blur = PropertyOf(PropertyId::Blur).guid;
  EXPECT_FALSE(page->IsChanging());
  {
    const PlainPage::Change change(*page, blur, &value);
    EXPECT_TRUE(page->IsChanging());
    EXPECT_EQ(page->changingProperty, &blur);
    EXPECT_EQ(page->changingValue, &value);
  }
  EXPECT_FALSE(page->IsChanging());
  EXPECT_EQ(page->changingValue, nullptr);
}

TEST_F(HvDsPPGTest, IsSuspendedAsLongAsOneLasts) {
  EXPECT_FALSE(page->IsSuspended());
  {
    const PlainPage::Suspension outer(*page);
    {
      const PlainPage::Suspension inner(*page);
      EXPECT_EQ(page->suspended, 2u);
    }
    EXPECT_TRUE(page->IsSuspended());
  }
  EXPECT_EQ(page->suspended, 0u);
}

class HvDsPPGReadIfAffectedTest : public HvDsPPGTest {
 protected:
  HvDsPPGReadIfAffectedTest() {
    Open();
    Put(PropertyId::Blur, 30.0);
    Put(PropertyId::Channels, 4.0);
    site.Taken();
  }
  template <class Value>
  std::optional<Value> Read(const ValueControl<Value>& control, const GUID& changed, const DSVariant* value = nullptr) {
    const PlainPage::Change change(*page, changed, value);
    return page->ReadIfAffected(control);
  }

  const GUID blur = PropertyOf(PropertyId::Blur).guid;
  const GUID aspect = PropertyOf(PropertyId::Aspect).guid;
  const GUID channels = PropertyOf(PropertyId::Channels).guid;
  const DSVariant seven = DSVariant::Of(7.0);
};

TEST_F(HvDsPPGReadIfAffectedTest, ReadsTheChangedProperty) {
  EXPECT_EQ(Read(page->size, blur), 30.0);
  EXPECT_EQ(Read(page->channels, channels), 4);
  EXPECT_EQ(site.Taken(), (Calls{"GetAnimatedProperty Blur 30", "GetPlainProperty Channels 4"}));
}

TEST_F(HvDsPPGReadIfAffectedTest, TakesTheNoticesValueWithoutReading) {
  EXPECT_EQ(Read(page->size, blur, &seven), 7.0);
  const DSVariant two = DSVariant::Of(2);
  EXPECT_EQ(Read(page->size, blur, &two), 2.0);
  EXPECT_EQ(Read(page->channels, channels, &two), 2);
  EXPECT_EQ(Read(page->channels, channels, &seven), 7);
  const DSVariant large = DSVariant::Of(-1e300);
  EXPECT_EQ(Read(page->channels, channels, &large), -2147483647 - 1);
  EXPECT_EQ(Read(page->size, GUID_ALL_PROPERTIES, &seven), 7.0);
  EXPECT_EQ(site.Taken(), Calls{});
}

TEST_F(HvDsPPGReadIfAffectedTest, ReadsEveryPropertyWhenAllChange) {
  EXPECT_EQ(Read(page->size, GUID_ALL_PROPERTIES), 30.0);
  EXPECT_EQ(Read(page->channels, GUID_ALL_PROPERTIES), 4);
}

TEST_F(HvDsPPGReadIfAffectedTest, LeavesOtherPropertiesAlone) {
  EXPECT_EQ(Read(page->size, aspect), std::nullopt);
  EXPECT_EQ(Read(page->size, aspect, &seven), std::nullopt);
  EXPECT_EQ(Read(page->size, GUID_NO_PROPERTY), std::nullopt);
  EXPECT_EQ(page->ReadIfAffected(page->size), std::nullopt) << "no change";
  page->size.property = GUID_NO_PROPERTY;
  EXPECT_EQ(Read(page->size, GUID_NO_PROPERTY), std::nullopt) << "bound to none";
  EXPECT_EQ(Read(page->size, GUID_NO_PROPERTY, &seven), std::nullopt);
  EXPECT_EQ(Read(page->size, GUID_ALL_PROPERTIES), std::nullopt);
  EXPECT_EQ(Read(page->size, GUID_ALL_PROPERTIES, &seven), std::nullopt);
  EXPECT_EQ(site.Taken(), Calls{});
}

TEST_F(HvDsPPGReadIfAffectedTest, HasNothingWhenTheReadFails) {
  page->SetObjects(0, nullptr);
  EXPECT_EQ(Read(page->size, blur), std::nullopt);
  EXPECT_EQ(Read(page->channels, channels), std::nullopt);
  EXPECT_EQ(Read(page->size, blur, &seven), 7.0);
}

}  // namespace
}  // namespace vblur
