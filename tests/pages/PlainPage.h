// A page of the pages' base with records of its own, and its dialog.
#pragma once

#include <string>
#include <vector>

#include "pages/ColourChip.h"
#include "platform/WindowStyles.h"
#include "tests/pages/PageTest.h"

namespace vblur {

namespace plain_page {

inline constexpr std::int32_t kDialog = 9;
inline constexpr std::int32_t kSize = 20;
inline constexpr std::int32_t kFinish = 21;
inline constexpr std::int32_t kChannels = 22;
inline constexpr std::int32_t kDisplay = 23;
inline constexpr std::int32_t kText = 24;
inline constexpr std::int32_t kChip = 25;
inline constexpr std::int32_t kGo = 26;
inline constexpr std::int32_t kRed = 30;  // to 33: green, blue, alpha
inline constexpr std::int32_t kAbsent = 99;

inline constexpr std::uint32_t kShown = WS_CHILD | WS_VISIBLE | WS_TABSTOP;
constexpr ModuleControl Static(std::int32_t id, std::string_view text) {
  return {id, ModuleControlKind::Static, text, 0, 0, 9, 9, kShown};
}
inline constexpr std::string_view kNumber = "N;class=dsnewnumberctrl;min=0;max=10";
inline constexpr ModuleControl kControls[] = {
    Static(kSize, kNumber),
    Static(kFinish, kNumber),
    {kChannels, ModuleControlKind::List, "", 0, 0, 9, 9, kShown},
    {kDisplay, ModuleControlKind::CheckBox, "Display", 0, 0, 9, 9, kShown},
    Static(kText, "text"),
    Static(kChip, ";class=dsnewcolorchipctrl;auto=1"),
    {kGo, ModuleControlKind::PushButton, "Go!", 0, 0, 9, 9, kShown},
    Static(kRed, kNumber),
    Static(kRed + 1, kNumber),
    Static(kRed + 2, kNumber),
    Static(kRed + 3, kNumber),
};
inline constexpr ModuleDialog kDialogs[] = {{kDialog, 100, 100, "Arial", 11, WS_CHILD, kControls}};
// The last is too long for a list.
inline const std::string kLong(300, 'x');
inline const ModuleString kStrings[] = {{1, "Plain"}, {2, "first"}, {3, "second"}, {4, ""}, {5, kLong}};
inline HMODULE ModuleHandle() {
  static const Module kRecord{kStrings, {}, kDialogs};
  static const TestModule kModule(kRecord);
  return kModule.Handle();
}

constexpr ControlRow Row(std::int32_t id, PropertyId property) {
  return {id, 0, property, 0};
}

}  // namespace plain_page

class PlainPage : public HvDsPPG {
 public:
  explicit PlainPage(const char* name = "plain") : HvDsPPG(plain_page::kDialog, 1, name) {
    module = plain_page::ModuleHandle();
  }
  ~PlainPage() override { DisconnectEffect(); }

  CDSPPGControlMap* GetControlMap() override {
    using namespace plain_page;
    using Entry = CDSPPGControlMapEntry;
    static constexpr auto kIdOf = [](PropertyId id) { return PropertyOf(id).guid; };
    static constexpr Entry kEntries[] = {
        {kIdOf(PropertyId::Blur), VT_R8, [](auto& p) -> void* { return &Of(p).size.value; }, kSize, nullptr, 1, 0},
        {kIdOf(PropertyId::FinishFadingOutFirstClip), VT_R8, [](auto& p) -> void* { return &Of(p).finish.value; },
         kFinish, nullptr, 0, 0},
        {kIdOf(PropertyId::Channels), VT_I4, [](auto& p) -> void* { return &Of(p).channels.value; }, kChannels, nullptr,
         16, 0},
        {kIdOf(PropertyId::DisplayCropped), VT_BOOL, [](auto& p) -> void* { return &Of(p).display.value; }, kDisplay,
         nullptr, 16, 0},
        {GUID_NO_PROPERTY, VT_EMPTY, nullptr, kChip, [](auto& p) { Of(p).chip.ReadChip(); }, 2, 0},
        {GUID_NO_PROPERTY, VT_EMPTY, nullptr, kGo, [](auto& p) { Of(p).Go(); }, 2, 0},
        {kIdOf(PropertyId::CropColourR), VT_R8, [](auto& p) -> void* { return &Of(p).chip.red.value; }, kRed, nullptr,
         1, 0},
        {kIdOf(PropertyId::CropColourG), VT_R8, [](auto& p) -> void* { return &Of(p).chip.green.value; }, kRed + 1,
         nullptr, 1, 0},
        {kIdOf(PropertyId::CropColourB), VT_R8, [](auto& p) -> void* { return &Of(p).chip.blue.value; }, kRed + 2,
         nullptr, 1, 0},
        {kIdOf(PropertyId::CropColourA), VT_R8, [](auto& p) -> void* { return &Of(p).chip.alpha.value; }, kRed + 3,
         nullptr, 1, 0},
        {},
    };
    static CDSPPGControlMap map{&m_ControlMap, "plain", kEntries};
    map.Initialize();
    return &map;
  }

  using HvDsPPG::Change;
  using HvDsPPG::changingProperty;
  using HvDsPPG::changingValue;
  using HvDsPPG::ConnectOverlay;
  using HvDsPPG::DisconnectEffect;
  using HvDsPPG::effect;
  using HvDsPPG::lastNotification;
  using HvDsPPG::pageName;
  using HvDsPPG::QueryEffect;
  using HvDsPPG::shown;
  using HvDsPPG::suspended;
  using HvDsPPG::Suspension;
  using HvDsPPG::undoStyle;

  std::function<void()> onGo;
  ValueControl<double> size{*this, plain_page::Row(plain_page::kSize, PropertyId::Blur)};
  ValueControl<double> finish{*this, plain_page::Row(plain_page::kFinish, PropertyId::FinishFadingOutFirstClip)};
  ValueControl<std::int32_t> channels{*this, plain_page::Row(plain_page::kChannels, PropertyId::Channels)};
  ValueControl<bool> display{*this, plain_page::Row(plain_page::kDisplay, PropertyId::DisplayCropped)};
  ColourChip chip{this,
                  plain_page::kChip,
                  0,
                  {*this, plain_page::Row(plain_page::kRed, PropertyId::CropColourR)},
                  {*this, plain_page::Row(plain_page::kRed + 1, PropertyId::CropColourG)},
                  {*this, plain_page::Row(plain_page::kRed + 2, PropertyId::CropColourB)},
                  {*this, plain_page::Row(plain_page::kRed + 3, PropertyId::CropColourA)},
                  ColourChip::kHasAlpha};

 private:
  static PlainPage& Of(CDSBasePropertyPage& page) { return static_cast<PlainPage&>(page); }
  void Go() {
    if (onGo) onGo();
  }
};

}  // namespace vblur
