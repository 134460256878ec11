// The effect and its property pages without the server's library, on a site with the host's dialogs, history and
// viewer.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "effect/Blur.h"
#include "host/viewer/Viewer.h"
#include "pages/HvDsPPG.h"
#include "properties/ClassIds.h"
#include "properties/PropertyTable.h"
#include "resources/Bitmaps.h"
#include "resources/Dialogs.h"
#include "resources/Numbers.h"
#include "resources/Strings.h"
#include "sdk/effects/Catalogue.h"
#include "sdk/effects/ClassObjects.h"
#include "server/CDsClassFactory.h"
#include "tests/effect/EffectBench.h"
#include "tests/support/host/RecordingSite.h"
#include "tests/support/host/TestModule.h"

namespace vblur {

// Offers the viewer tool as the server does, while it lives.
class ToolServer {
 public:
  ToolServer() {
    // Where the system makes objects, it is given the classes of the catalogue.
    host::KeepClassesInProcess(true);
    host::CurrentCatalogue().AddClass(classes::kHvTInteract, nullptr, 0);
    host::AddServer(&ClassObject);
  }
  ~ToolServer() {
    host::RemoveServer(&ClassObject);
    host::CurrentCatalogue().RemoveClass(classes::kHvTInteract);
    host::KeepClassesInProcess(false);
    offers = true;
  }
  ToolServer(const ToolServer&) = delete;
  ToolServer& operator=(const ToolServer&) = delete;

  static inline bool offers = true;

 private:
  static HRESULT ClassObject(const GUID& clsid, const GUID& iid, void** result) {
    static std::atomic<std::int32_t> locks = 0;
    if (clsid != classes::kHvTInteract || !offers) return kNoSuchClass;
    auto* const factory = new CDsClassFactory<HvTInteract>(locks);
    const HRESULT answer = factory->QueryInterface(iid, result);
    factory->Release();
    return answer;
  }
};

// Tells which pages showed, and when it ends.
class WatchedBlur : public Blur {
 public:
  ~WatchedBlur() override {
    if (onEnd) onEnd();
  }
  void PageShown(const char* page, std::int32_t a, std::int32_t b) override {
    if (onShown) onShown(page == nullptr ? "without a name" : page);
    Blur::PageShown(page, a, b);
  }

  std::function<void(const std::string&)> onShown;
  std::function<void()> onEnd;
};

// What a page keeps to itself.
struct OpenPage : HvDsPPG {
  static std::uint32_t& SuspendedOf(HvDsPPG& page) { return page.*&OpenPage::suspended; }
};

// The record that a bound variable belongs to.
template <class Value>
const ValueControl<Value>& RecordOf(const void* variable) {
  using Record = ValueControl<Value>;
  return *reinterpret_cast<const Record*>(static_cast<const std::byte*>(variable) - offsetof(Record, value));
}

// An entry of a control map, and the label of its record.
struct ExpectedControl {
  std::optional<PropertyId> property;
  VARTYPE type;
  std::int32_t controlId;
  bool acts;
  std::int32_t flags;
  std::int32_t toolTip;
  std::uint32_t label = 0;
};

inline void ExpectDialogHas(std::int32_t dialog, std::int32_t controlId, bool has) {
  const auto dialogs = resources::Dialogs();
  const auto found = std::ranges::find(dialogs, dialog, &ModuleDialog::id);
  ASSERT_NE(found, dialogs.end());
  const auto control = std::ranges::find(found->controls, controlId, &ModuleControl::id);
  EXPECT_EQ(control != found->controls.end(), has) << controlId;
}

template <class Value>
void ExpectRecord(HvDsPPG& page, const void* variable, const ExpectedControl& expected) {
  const ValueControl<Value>& record = RecordOf<Value>(variable);
  EXPECT_EQ(record.page, &page) << expected.controlId;
  EXPECT_EQ(record.controlId, static_cast<std::uint32_t>(expected.controlId));
  EXPECT_EQ(record.labelId, expected.label) << expected.controlId;
  EXPECT_EQ(record.localOnly, expected.property ? 0 : 1) << expected.controlId;
  if (expected.property) {
    EXPECT_EQ(record.property, PropertyOf(*expected.property).guid) << expected.controlId;
  }
  if constexpr (std::is_same_v<Value, double>) {
    EXPECT_EQ(record.animated, expected.flags & 1) << expected.controlId;
  }
}

// Every entry in its order, the end behind them, and that each control and label is in the dialog, but `absent`.
inline void ExpectControlMap(HvDsPPG& page, const char* name, const std::vector<ExpectedControl>& expected,
                             std::int32_t absent = 0) {
  DSPageInfo info;
  ASSERT_EQ(page.GetPageInfo(&info), kOk);
  const CDSPPGControlMap& map = *page.GetControlMap();
  EXPECT_EQ(info.controls, &map);
  EXPECT_STREQ(map.name, name);
  EXPECT_EQ(map.parent, &CDSBasePropertyPage::m_ControlMap);
  ASSERT_EQ(map.count, expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const CDSPPGControlMapEntry& entry = map.entries[i];
    const ExpectedControl& wanted = expected[i];
    EXPECT_EQ(entry.property, wanted.property ? PropertyOf(*wanted.property).guid : GUID_NO_PROPERTY) << i;
    EXPECT_EQ(entry.type, wanted.type) << i;
    EXPECT_EQ(entry.controlId, wanted.controlId) << i;
    EXPECT_EQ(entry.action != nullptr, wanted.acts) << i;
    EXPECT_EQ(entry.flags, wanted.flags) << i;
    EXPECT_EQ(entry.toolTip, wanted.toolTip) << i;
    EXPECT_EQ(entry.last, -1) << i;
    ASSERT_EQ(entry.variable != nullptr, wanted.type != VT_EMPTY) << i;
    if (wanted.type == VT_R8) ExpectRecord<double>(page, entry.variable(page), wanted);
    if (wanted.type == VT_I4) ExpectRecord<std::int32_t>(page, entry.variable(page), wanted);
    if (wanted.type == VT_BOOL) ExpectRecord<bool>(page, entry.variable(page), wanted);
    ExpectDialogHas(info.dialog, wanted.controlId, wanted.controlId != absent);
    if (wanted.label != 0) ExpectDialogHas(info.dialog, static_cast<std::int32_t>(wanted.label), true);
  }
  const CDSPPGControlMapEntry& end = map.entries[map.count];
  EXPECT_EQ(end.property, GUID{});
  EXPECT_EQ(end.controlId, -1);
}

// The server's resources, with another range in the text of each number control.
class ForeignRanges {
 public:
  ForeignRanges() {
    const auto dialogs = resources::Dialogs();
    texts_.reserve(100);
    controls_.reserve(dialogs.size());
    for (const ModuleDialog& dialog : dialogs) {
      controls_.emplace_back(dialog.controls.begin(), dialog.controls.end());
      for (ModuleControl& control : controls_.back()) {
        const std::size_t range = control.text.find(";min=");
        if (range == std::string_view::npos) continue;
        texts_.push_back(std::string(control.text.substr(0, range)) + ";min=-7;max=-6");
        control.text = texts_.back();
      }
      dialogs_.push_back(dialog);
      dialogs_.back().controls = controls_.back();
    }
    record_ = {resources::Strings(), {}, dialogs_};
    module_.emplace(record_);
    kept_ = std::exchange(HvDsPPG::module, module_->Handle());
  }
  ~ForeignRanges() { HvDsPPG::module = kept_; }
  ForeignRanges(const ForeignRanges&) = delete;
  ForeignRanges& operator=(const ForeignRanges&) = delete;

 private:
  std::vector<std::string> texts_;
  std::vector<std::vector<ModuleControl>> controls_;
  std::vector<ModuleDialog> dialogs_;
  Module record_;
  std::optional<TestModule> module_;
  HMODULE kept_ = nullptr;
};

// A page on its site; the dialog is not made yet.
template <class Page>
class PageTest : public testing::Test {
 protected:
  PageTest() {
    HvDsPPG::module = ServerResources();
    page = ComPtr<Page>::Own(new Page);
    UseAs(*effect, host::EffectKind::Filter);
    viewer->Edit(Edited());
    site.history = &history;
  }
  ~PageTest() override {
    if (page) page->SetSite(nullptr);
    page.reset();
    viewer->Edit(nullptr);
  }

  IUnknown* Edited() { return static_cast<IDSProperties*>(effect.get()); }
  // Makes the dialog, without reading the properties beyond what the page does.
  HRESULT Activate() {
    IUnknown* const edited = Edited();
    page->SetSite(&site);
    page->SetObjects(1, &edited);
    return page->Activate();
  }
  // As a program opens a page. What that asks of the site is dropped.
  void Open() {
    ASSERT_EQ(Activate(), kOk);
    page->Refresh();
    page->Show(SW_SHOW);
    site.Taken();
  }
  // The page goes from its site and ends.
  void Close() {
    page->SetSite(nullptr);
    page.reset();
  }

  void Put(PropertyId id, double value) { effect->PutValue(PropertyOf(id).guid, DSVariant::Of(value)); }
  double Get(PropertyId id) {
    DSVariant value;
    effect->GetValue(PropertyOf(id).guid, &value);
    return value.AsNumber();
  }
  // From one value at the time 0 to another at 10.
  void Animate(PropertyId id, double from, double to) {
    effect->PutCurve(PropertyOf(id).guid, {{{0.0, from}, {10.0, to}}, DSInterpolation::Linear});
  }
  // References to the effect beside the test's and the history's.
  std::uint32_t OthersHold() {
    effect->AddRef();
    return effect->Release() - 2;
  }

  template <class Control>
  Control& Of(std::int32_t id) {
    return site.Of<Control>(id);
  }
  std::u16string TextOf(std::int32_t id) { return site.dialog->Item(id)->Text(); }
  bool IsEnabled(std::int32_t id) { return site.dialog->Item(id)->IsEnabled(); }
  void Press(std::int32_t id) { Of<host::ButtonControl>(id).Press(); }

  void ExpectRange(std::int32_t id, double minimum, double maximum) {
    const auto& number = Of<host::NumberControl>(id);
    EXPECT_EQ(number.Range().minimum, minimum) << id;
    EXPECT_EQ(number.Range().maximum, maximum) << id;
  }
  // The page's range of each number control is that of its text in the resources, and of its property.
  void ExpectRangesAgree() {
    ASSERT_EQ(Activate(), kOk);
    for (const ModuleControl& control :
         std::ranges::find(resources::Dialogs(), site.dialog->Id(), &ModuleDialog::id)->controls) {
      const host::ControlText text = host::ReadControlText(control.text);
      if (control.kind != ModuleControlKind::Static || text.kind != host::PageWindowKind::Number) continue;
      ExpectRange(control.id, text.minimum, text.maximum);
      const auto* const entry = page->GetControlMap()->Find(control.id);
      ASSERT_NE(entry, nullptr) << control.id;
      const auto property = std::ranges::find(kProperties, entry->property, &Property::guid);
      ASSERT_NE(property, kProperties.end()) << control.id;
      ExpectRange(control.id, property->minimum, property->maximum);
    }
  }
  void ExpectList(std::int32_t id, std::int32_t selected, const std::vector<std::u16string>& entries) {
    const auto& list = Of<host::ListControl>(id);
    EXPECT_EQ(list.Entries(), entries) << id;
    EXPECT_EQ(list.Selected(), selected) << id;
    EXPECT_EQ(list.Text(), entries[static_cast<std::size_t>(selected)]) << id;
  }

  // The variable of each control has its property's value after a notice.
  void ExpectVariablesFollow() {
    const CDSPPGControlMap& map = *page->GetControlMap();
    for (std::size_t i = 0; i < map.count; ++i) {
      const CDSPPGControlMapEntry& entry = map.entries[i];
      if (entry.variable == nullptr || entry.property == GUID_NO_PROPERTY) continue;
      const double other = entry.type == VT_R8 ? 3.5 + static_cast<double>(i) : 1.0;
      DSVariant before;
      effect->GetValue(entry.property, &before);
      effect->PutValue(entry.property, DSVariant::Of(entry.type == VT_R8 ? other : 1.0 - before.AsNumber()));
      effect->GetValue(entry.property, &before);
      const void* const variable = entry.variable(*page);
      if (entry.type == VT_R8) {
        EXPECT_EQ(*static_cast<const double*>(variable), other) << entry.controlId;
      } else if (entry.type == VT_I4) {
        EXPECT_EQ(*static_cast<const std::int32_t*>(variable), before.whole) << entry.controlId;
      } else {
        EXPECT_EQ(*static_cast<const bool*>(variable), before.whole != 0) << entry.controlId;
      }
    }
  }

  // The page asks for the effect and links it; its end gives both back.
  void ExpectLink() {
    ASSERT_EQ(Activate(), kOk);
    EXPECT_EQ(page->Effect(), static_cast<HvDsEffect*>(effect.get()));
    ASSERT_NE(effect->OverlayTool(), nullptr);
    EXPECT_EQ(viewer->ToolCount(), 1u);
    const std::uint32_t held = OthersHold();
    page->Deactivate();
    EXPECT_NE(effect->OverlayTool(), nullptr) << "until the page ends";
    EXPECT_EQ(page->Activate(), kOk);
    EXPECT_EQ(OthersHold(), held) << "a second dialog";
    effect->ConnectOverlay(Edited());
    Close();
    EXPECT_NE(effect->OverlayTool(), nullptr) << "another page holds it";
    effect->DisconnectOverlay();
    EXPECT_EQ(effect->OverlayTool(), nullptr) << "the page has let go once";
    EXPECT_EQ(viewer->ToolCount(), 0u);
    EXPECT_EQ(OthersHold(), 0u);
  }
  // Without objects, and with one that is no effect.
  void ExpectToLiveWithoutEffect() {
    page->SetSite(&site);
    for (IUnknown* const object : {static_cast<IUnknown*>(nullptr), static_cast<IUnknown*>(viewer.get())}) {
      EXPECT_EQ(page->SetObjects(object == nullptr ? 0 : 1, &object), kOk);
      EXPECT_EQ(page->Activate(), kOk);
      EXPECT_EQ(page->Effect(), nullptr);
      EXPECT_EQ(page->Show(SW_SHOW), kOk);
      EXPECT_EQ(page->Refresh(), kOk);
      EXPECT_EQ(page->UpdateAnimatedControls(1.0), kOk);
      for (const auto& item : site.dialog->Items()) {
        if (auto* const button = dynamic_cast<host::ButtonControl*>(item.get()); button != nullptr) button->Press();
      }
      EXPECT_EQ(page->Deactivate(), kOk);
    }
    Close();
    EXPECT_EQ(effect->OverlayTool(), nullptr);
    EXPECT_EQ(OthersHold(), 0u);
  }
  void ExpectCounted() {
    std::atomic<std::int32_t> count = 0;
    Page::liveObjects = &count;
    auto second = ComPtr<Page>::Own(new Page);
    auto third = ComPtr<Page>::Own(new Page);
    EXPECT_EQ(count, 2);
    second.reset();
    EXPECT_EQ(count, 1);
    third.reset();
    EXPECT_EQ(count, 0);
    Page::liveObjects = nullptr;
  }
  // The name that the effect gets, and the title.
  void ExpectNamed(const std::string& name, const std::u16string& title, std::int32_t dialog) {
    DSPageInfo info;
    page->GetPageInfo(&info);
    EXPECT_EQ(std::u16string(info.title), title);
    EXPECT_EQ(info.dialog, dialog);
    std::string shown;
    effect->onShown = [&](const std::string& which) { shown += which; };
    Open();
    EXPECT_EQ(shown, name);
    effect->onShown = {};
  }

  ToolServer server;
  ComPtr<host::Viewer> viewer = host::Viewer::Make();
  ComPtr<WatchedBlur> effect = ComPtr<WatchedBlur>::Own(new WatchedBlur);
  host::UndoHistory history{*effect};
  host::RecordingSite site;
  ComPtr<Page> page;
};

}  // namespace vblur
