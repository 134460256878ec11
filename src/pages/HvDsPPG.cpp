#include "pages/HvDsPPG.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

#include "pages/OpenManual.h"

namespace vblur {

namespace {

constexpr double kNow = -1.0;

// Null for null.
char* Duplicate(const char* text) {
  if (text == nullptr) return nullptr;
  const std::size_t size = std::strlen(text) + 1;
  auto* const copy = static_cast<char*>(std::malloc(size));
  if (copy != nullptr) std::memcpy(copy, text, size);
  return copy;
}

}  // namespace

const UINT HvDsPPG::kNotifyMessage = RegisterWindowMessageW(kControlNotify);
const UINT HvDsPPG::kNotifyCompleteMessage = RegisterWindowMessageW(kControlNotifyComplete);
const UINT HvDsPPG::kScrubMessage = RegisterWindowMessageW(kControlScrub);
const UINT HvDsPPG::kToolTipMessage = RegisterWindowMessageW(kControlToolTip);

void HvDsPPG::FreeText::operator()(char* text) const {
  std::free(text);
}

HvDsPPG::HvDsPPG(std::int32_t dialog, std::int32_t titleString, const char* name)
    : CDSPropertyPage(dialog, titleString), pageName(Duplicate(name)) {}

HRESULT HvDsPPG::Show(std::uint32_t mode) {
  if (const HRESULT result = CDSBasePropertyPage::Show(mode); result < 0) return result;
  shown = 0;
  if (mode == SW_SHOWNORMAL || mode == SW_SHOW) {
    shown = 1;
    if (effect != nullptr) effect->PageShown(pageName.get());
  }
  return CDSBasePropertyPage::Show(mode);
}

HRESULT HvDsPPG::Help(const char16_t*) {
  OpenManual(effect == nullptr ? "index" : "effect");
  return kOk;
}

void HvDsPPG::SetNumberRange(std::int32_t id, double minimum, double maximum) {
  auto* const unknown = static_cast<IUnknown*>(GetPropW(GetDlgItem(GetDialog(), id), kControlInterface));
  if (unknown == nullptr) return;
  ComPtr<IDSNumberControl> number;
  if (unknown->QueryInterface(IDSNumberControl::kIid, number.Receive()) != kOk) return;
  number->SetRange(DSVariant::Of(minimum), DSVariant::Of(maximum));
}

void HvDsPPG::SetNumberRange(const ControlRow& row) {
  SetNumberRange(row.controlId, row.Of().minimum, row.Of().maximum);
}

template <class Value>
void HvDsPPG::ClearList(const ValueControl<Value>& control) {
  if (control.page == nullptr || control.controlId == 0) return;
  SendMessageW(GetHwndControl(static_cast<std::int32_t>(control.controlId)), CB_RESETCONTENT, 0, 0);
}

template <class Value>
void HvDsPPG::AddListString(const ValueControl<Value>& control, std::int32_t stringId, bool select) {
  std::array<char16_t, 256> text{};
  if (LoadStringW(GetResourceInstance(), stringId, text.data(), static_cast<std::int32_t>(text.size())) <= 0) return;
  const HWND list = GetHwndControl(static_cast<std::int32_t>(control.controlId));
  const auto given = reinterpret_cast<LPARAM>(text.data());
  SendMessageW(list, CB_ADDSTRING, 0, given);
  if (select) SendMessageW(list, WM_SETTEXT, 0, given);
}

void HvDsPPG::FillList(const ValueControl<std::int32_t>& control, const ControlRow& row) {
  ClearList(control);
  const auto shownEntry = static_cast<std::int32_t>(row.Of().defaultValue);
  const auto count = static_cast<std::int32_t>(row.Of().entries.size());
  for (std::int32_t entry = 0; entry < count; ++entry)
    AddListString(control, row.Of().hintString + 1 + entry, entry == shownEntry);
}

void HvDsPPG::SetControlText(std::int32_t id, const char* text) {
  constexpr std::size_t kMost = 2047;
  if (text == nullptr) return;
  const std::string_view all(text);
  std::array<char16_t, kMost + 1> wide{};
  std::transform(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(std::min(all.size(), kMost)), wide.begin(),
                 [](char c) { return static_cast<char16_t>(static_cast<unsigned char>(c)); });
  SendMessageW(GetDlgItem(GetDialog(), id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(wide.data()));
}

template <class Value>
void HvDsPPG::Enable(const ValueControl<Value>& control, bool enabled) {
  if (control.page == nullptr || control.controlId == 0) return;
  EnableWindow(GetHwndControl(static_cast<std::int32_t>(control.controlId)), enabled);
}

void HvDsPPG::BeginUndo() {
  undoMgr.Begin(lastNotification, &undoStyle, 1);
}

void HvDsPPG::EndUndo() {
  undoMgr.End();
  undoStyle = kUndoStep;
}

template <class Value>
std::optional<Value> HvDsPPG::ReadIfAffected(const ValueControl<Value>& control) const {
  if (changingProperty == nullptr || control.property == GUID_NO_PROPERTY) return std::nullopt;
  if (control.property != *changingProperty && *changingProperty != GUID_ALL_PROPERTIES) return std::nullopt;
  if (changingValue != nullptr) {
    if constexpr (std::is_same_v<Value, double>) {
      return changingValue->AsNumber();
    } else {
      return static_cast<Value>(changingValue->AsWhole());
    }
  }
  Value value{};
  if (!control.Read(value)) return std::nullopt;
  return value;
}

void* HvDsPPG::QueryEffect(const GUID& iid) {
  DisconnectEffect();
  void* found = nullptr;
  if (IUnknown* const object = InspectedObject(); object != nullptr) object->QueryInterface(iid, &found);
  return found;
}

HvTInteract* HvDsPPG::ConnectOverlay() {
  if (effect == nullptr) return nullptr;
  effect->ConnectOverlay(InspectedObject());
  return effect->OverlayTool();
}

void HvDsPPG::DisconnectEffect() {
  HvDsEffect* const last = std::exchange(effect, nullptr);
  if (last == nullptr) return;
  last->DisconnectOverlay();
  last->ReleaseObject();
}

template <class Value>
bool ValueControl<Value>::Read(Value& result) const {
  if (page == nullptr || property == GUID_NO_PROPERTY) return false;
  DSVariant read;
  if constexpr (std::is_same_v<Value, double>) {
    const HRESULT done = animated != 0 ? page->GetAnimatedProperty(property, &read, nullptr, kNow)
                                       : page->GetPlainProperty(property, &read, nullptr);
    if (done != kOk) return false;
    result = read.AsNumber();
  } else {
    if (page->GetPlainProperty(property, &read, nullptr) != kOk) return false;
    result = static_cast<Value>(read.AsWhole());
  }
  return true;
}

template <class Value>
Value ValueControl<Value>::Get() const {
  if (page == nullptr) return {};
  Value current{};
  return page->IsChanging() && localOnly == 0 && Read(current) ? current : value;
}

template <class Value>
void ValueControl<Value>::Set(Value newValue) {
  value = newValue;
  if (page == nullptr) return;
  if (localOnly == 0) {
    if constexpr (std::is_same_v<Value, double>) {
      const DSVariant written = DSVariant::Of(newValue);
      if (animated != 0) {
        page->SetAnimatedProperty(property, written, nullptr, kNow, page->UndoStyle());
      } else {
        page->SetPlainProperty(property, written, nullptr, page->UndoStyle());
      }
    } else if constexpr (std::is_same_v<Value, bool>) {
      page->SetPlainProperty(property, {DSValueType::Boolean32, 0.0, newValue ? 1 : 0}, nullptr, page->UndoStyle());
    } else {
      page->SetPlainProperty(property, DSVariant::Of(newValue), nullptr, page->UndoStyle());
    }
  }
  if (controlId != 0) page->SetControlFromBoundVariable(static_cast<std::int32_t>(controlId));
}

template struct ValueControl<double>;
template struct ValueControl<std::int32_t>;
template struct ValueControl<bool>;
template std::optional<double> HvDsPPG::ReadIfAffected(const ValueControl<double>&) const;
template std::optional<std::int32_t> HvDsPPG::ReadIfAffected(const ValueControl<std::int32_t>&) const;
template void HvDsPPG::ClearList(const ValueControl<std::int32_t>&);
template void HvDsPPG::AddListString(const ValueControl<std::int32_t>&, std::int32_t, bool);
template void HvDsPPG::Enable(const ValueControl<double>&, bool);

}  // namespace vblur
