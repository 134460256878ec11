// A page of the host's base class with a control of every kind, and an object for it to edit.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "platform/CDSPropertyContainer.h"
#include "platform/CDSPropertyPage.h"
#include "platform/ComPtr.h"
#include "platform/WindowStyles.h"
#include "tests/support/host/RecordingSite.h"
#include "tests/support/host/TestModule.h"

namespace vblur {

// A number that may have keys, one that may not, a choice and a tick. The site notes the last byte of their ids.
class EditedObject : public CDSAliasedPropertyContainer {
 public:
  static constexpr GUID kSize = MakeGuid("{00000000-0000-0000-0000-000000000001}");
  static constexpr GUID kWeight = MakeGuid("{00000000-0000-0000-0000-000000000002}");
  static constexpr GUID kChoice = MakeGuid("{00000000-0000-0000-0000-000000000003}");
  static constexpr GUID kTick = MakeGuid("{00000000-0000-0000-0000-000000000004}");

  ~EditedObject() override {
    if (onEnd) onEnd();
  }

  HRESULT GetStaticPropertyCount(std::int32_t* count) override {
    *count = 4;
    return kOk;
  }
  HRESULT GetStaticPropertiesMap(const CDSPropertiesMap** map) override {
    static const std::array entries{
        EntryOf(kSize, 5, DSValueType::Float64, [](auto& c) -> void* { return &Of(c).size; }),
        EntryOf(kWeight, 4, DSValueType::Float64, [](auto& c) -> void* { return &Of(c).weight; }),
        EntryOf(kChoice, 4, DSValueType::Integer32, [](auto& c) -> void* { return &Of(c).choice; }),
        EntryOf(kTick, 4, DSValueType::Boolean32, [](auto& c) -> void* { return &Of(c).tick; })};
    static const CDSPropertiesMap all{nullptr, entries};
    *map = &all;
    return kOk;
  }

  // The value of the key at a time; -99 without one.
  double KeyAt(double time) {
    const DSCurve* curve = nullptr;
    if (GetCurve(kSize, &curve) != kOk) return -99.0;
    const auto found = std::ranges::find(curve->keys, time, &DSCurveKey::time);
    return found == curve->keys.end() ? -99.0 : found->value;
  }

  double size = 5.0;
  double weight = 2.5;
  std::int32_t choice = 1;
  std::int32_t tick = 0;
  std::function<void()> onEnd;

 private:
  static EditedObject& Of(CDSBasePropertyContainer& container) { return static_cast<EditedObject&>(container); }
  static CDSPropertiesMapEntry EntryOf(const GUID& id, std::int32_t capability, DSValueType type,
                                       CDSPropertiesMapEntry::Member member) {
    return {{.id = id, .capability = capability, .type = type}, member};
  }
};

namespace editing_page {

inline constexpr std::int32_t kDialog = 7;
// Numbers of the properties; then one of the page alone.
inline constexpr std::int32_t kSizeId = 10;
inline constexpr std::int32_t kWeightId = 11;
inline constexpr std::int32_t kChoiceId = 12;
inline constexpr std::int32_t kTickId = 13;
inline constexpr std::int32_t kLocalId = 14;
inline constexpr std::int32_t kGoId = 15;
inline constexpr std::int32_t kIdleId = 16;      // a button that does nothing
inline constexpr std::int32_t kStrangerId = 17;  // a button that the map lacks
inline constexpr std::int32_t kAbsentId = 18;    // a tick that the dialog lacks

inline constexpr std::uint32_t kShown = WS_CHILD | WS_VISIBLE | WS_TABSTOP;
inline constexpr ModuleControl kControls[] = {
    {kSizeId, ModuleControlKind::Static, "Size;class=dsnewnumberctrl;min=0;max=10", 0, 0, 9, 9, kShown},
    {kWeightId, ModuleControlKind::Static, "Weight;class=dsnewnumberctrl;min=0;max=10", 0, 0, 9, 9, kShown},
    {kChoiceId, ModuleControlKind::List, "", 0, 0, 9, 9, kShown},
    {kTickId, ModuleControlKind::CheckBox, "Tick", 0, 0, 9, 9, kShown},
    {kLocalId, ModuleControlKind::Static, "Local;class=dsnewnumberctrl;min=0;max=10", 0, 0, 9, 9, kShown},
    {kGoId, ModuleControlKind::PushButton, "Go!", 0, 0, 9, 9, kShown},
    {kIdleId, ModuleControlKind::PushButton, "Idle", 0, 0, 9, 9, kShown},
    {kStrangerId, ModuleControlKind::PushButton, "Stranger", 0, 0, 9, 9, kShown},
};
inline constexpr ModuleDialog kDialogs[] = {{kDialog, 100, 100, "Arial", 11, WS_CHILD, kControls}};
inline constexpr ModuleString kStrings[] = {{1, "The page"}, {2, "How large it is."}};
inline HMODULE ModuleHandle() {
  static constexpr Module kRecord{kStrings, {}, kDialogs};
  static const TestModule kModule(kRecord);
  return kModule.Handle();
}

}  // namespace editing_page

class EditingPage : public CDSPropertyPage {
 public:
  EditingPage() : CDSPropertyPage(editing_page::kDialog, 1) {}
  ~EditingPage() override {
    if (onEnd) onEnd();
  }

  CDSPPGControlMap* GetControlMap() override {
    if (!hasMap) return nullptr;
    using namespace editing_page;
    using Entry = CDSPPGControlMapEntry;
    static constexpr Entry kEntries[] = {
        {EditedObject::kSize, VT_R8, [](auto& p) -> void* { return &Of(p).size; }, kSizeId, &Act, 1, 2},
        {EditedObject::kWeight, VT_R8, [](auto& p) -> void* { return &Of(p).weight; }, kWeightId, &Act, 0, 0},
        {EditedObject::kChoice, VT_I4, [](auto& p) -> void* { return &Of(p).choice; }, kChoiceId, &Act, 16, 0},
        {EditedObject::kTick, VT_BOOL, [](auto& p) -> void* { return &Of(p).tick; }, kTickId, &Act, 16, 0},
        {GUID_NO_PROPERTY, VT_R8, [](auto& p) -> void* { return &Of(p).local; }, kLocalId, &Act, 0, 0},
        {GUID_NO_PROPERTY, VT_EMPTY, nullptr, kGoId, &Act, 2, 0},
        {GUID_NO_PROPERTY, VT_EMPTY, nullptr, kIdleId, nullptr, 3, 0},
        {EditedObject::kTick, VT_BOOL, [](auto& p) -> void* { return &Of(p).absent; }, kAbsentId, &Act, 0, 0},
        {},
    };
    static CDSPPGControlMap map{&m_ControlMap, "test", kEntries};
    map.Initialize();
    return &map;
  }
  HMODULE GetResourceInstance() override { return editing_page::ModuleHandle(); }
  HRESULT OnInitDialog() override {
    const HRESULT result = CDSPropertyPage::OnInitDialog();
    for (const char16_t* entry : {u"zero", u"one", u"two"})
      SendMessageW(GetHwndControl(editing_page::kChoiceId), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry));
    return result;
  }
  using CDSPropertyPage::lastNotification;

  bool hasMap = true;
  std::function<void()> onAction;
  std::function<void()> onEnd;
  double size = 0.0;
  double weight = 0.0;
  std::int32_t choice = 0;
  bool tick = false;
  double local = 0.0;
  bool absent = false;

 private:
  static EditingPage& Of(CDSBasePropertyPage& page) { return static_cast<EditingPage&>(page); }
  static void Act(CDSBasePropertyPage& page) {
    if (Of(page).onAction) Of(page).onAction();
  }
};

// The page on a site with an object, dialog not made.
class EditingTest : public testing::Test {
 protected:
  ~EditingTest() override {
    if (page) page->SetSite(nullptr);
  }

  static IUnknown* UnknownOf(EditedObject& edited) { return static_cast<IDSProperties*>(&edited); }
  HRESULT Edit(EditedObject& edited) {
    IUnknown* const unknown = UnknownOf(edited);
    return page->SetObjects(1, &unknown);
  }
  // Makes the dialog and shows it; what that asks of the site is dropped.
  void Open() {
    page->SetSite(&site);
    Edit(*object);
    ASSERT_EQ(page->Activate(), kOk);
    page->Refresh();
    page->Show(SW_SHOW);
    site.Taken();
  }
  template <class Control>
  Control& Of(std::int32_t id) {
    return site.Of<Control>(id);
  }
  LRESULT Send(UINT message, std::int32_t id, LPARAM lParam = 0) {
    return page->OnDialogMessage(message, static_cast<WPARAM>(id), lParam);
  }

  host::RecordingSite site;
  ComPtr<EditedObject> object = ComPtr<EditedObject>::Own(new EditedObject);
  ComPtr<EditingPage> page = ComPtr<EditingPage>::Own(new EditingPage);
};

}  // namespace vblur
