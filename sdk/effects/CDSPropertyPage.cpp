#include "platform/CDSPropertyPage.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vblur {

namespace {

constexpr double kSiteTime = -1.0;
constexpr std::int32_t kOneBracket = 1;

// The messages that controls send, by their registered numbers.
struct ControlMessages {
  UINT notify = RegisterWindowMessageW(kControlNotify);
  UINT notifyComplete = RegisterWindowMessageW(kControlNotifyComplete);
  UINT scrub = RegisterWindowMessageW(kControlScrub);
  UINT toolTip = RegisterWindowMessageW(kControlToolTip);
};

const ControlMessages& Messages() {
  static const ControlMessages messages;
  return messages;
}

template <class Control>
ComPtr<Control> ControlOf(HWND window) {
  ComPtr<Control> control;
  auto* const unknown = static_cast<IUnknown*>(GetPropW(window, kControlInterface));
  if (unknown != nullptr) unknown->QueryInterface(Control::kIid, control.Receive());
  return control;
}

}  // namespace

class CDSBasePropertyPage::Listener : public IDSPropertyNotify {
 public:
  explicit Listener(CDSBasePropertyPage& page) : page_(page) {}

  void OnPropertyChanged(const GUID& property, const DSVariant* value, std::uint32_t) override {
    // Whoever sees a control move may release the page.
    const ComPtr<IDSPropertyPage> stay(&page_);
    page_.PropertyChanged(property, value);
  }

 private:
  CDSBasePropertyPage& page_;
};

CDSPPGControlMap CDSBasePropertyPage::m_ControlMap{};

CDSBasePropertyPage::CDSBasePropertyPage(std::int32_t dialog, std::int32_t titleString)
    : dialogId_(dialog), titleString_(titleString), listener_(std::make_unique<Listener>(*this)) {}

CDSBasePropertyPage::~CDSBasePropertyPage() {
  CDSBasePropertyPage::Deactivate();
}

HRESULT CDSBasePropertyPage::QueryInterface(const GUID& iid, void** result) {
  if (result == nullptr) return kNullPointer;
  *result = iid == IUnknown::kIid || iid == IDSPropertyPage::kIid ? static_cast<IDSPropertyPage*>(this) : nullptr;
  if (*result == nullptr) return kNoInterface;
  AddReference();
  return kOk;
}

HRESULT CDSBasePropertyPage::SetSite(IDSPageSite* site) {
  if (site == site_) return kOk;
  Deactivate();
  while (openSteps_ != 0)
    EndStep();
  site_ = site;
  return kOk;
}

HRESULT CDSBasePropertyPage::SetObjects(std::int32_t count, IUnknown* const* objects) {
  if (count < 0 || (count > 0 && objects == nullptr)) return kWrongArgument;
  if (count > 0 && std::any_of(objects, objects + count, [](const IUnknown* object) { return object == nullptr; })) {
    return kNullPointer;
  }
  const bool listens = dialog_ != nullptr && properties_;
  if (listens) properties_->Unadvise(listener_.get());
  // The new ones first: they may be those that the page has kept alone.
  std::vector<ComPtr<IUnknown>> given;
  given.reserve(static_cast<std::size_t>(count));
  for (std::int32_t i = 0; i < count; ++i)
    given.emplace_back(objects[i]);
  objects_ = std::move(given);
  properties_ = objects_.empty() ? nullptr : objects_.front().As<IDSProperties>();
  if (dialog_ != nullptr && properties_) properties_->Advise(listener_.get());
  return kOk;
}

HRESULT CDSBasePropertyPage::GetPageInfo(DSPageInfo* info) {
  if (info == nullptr) return kNullPointer;
  info->dialog = dialogId_;
  LoadStringW(GetResourceInstance(), titleString_, info->title, static_cast<std::int32_t>(std::size(info->title)));
  info->controls = GetControlMap();
  return kOk;
}

HRESULT CDSBasePropertyPage::Activate() {
  if (site_ == nullptr || dialog_ != nullptr) return kFailed;
  dialog_ = site_->MakeDialog(GetResourceInstance(), dialogId_, *this);
  if (dialog_ == nullptr) return kFailed;
  if (properties_) properties_->Advise(listener_.get());
  return OnInitDialog();
}

HRESULT CDSBasePropertyPage::Refresh() {
  return PropertyChanged(GUID_ALL_PROPERTIES, nullptr);
}

HRESULT CDSBasePropertyPage::Deactivate() {
  if (dialog_ == nullptr) return kFalse;
  if (properties_) properties_->Unadvise(listener_.get());
  if (std::exchange(scrubbing_, false)) EndStep();
  site_->DropDialog(std::exchange(dialog_, nullptr));
  return kOk;
}

HRESULT CDSBasePropertyPage::Show(std::uint32_t mode) {
  if (dialog_ == nullptr) return kFailed;
  site_->ShowDialog(dialog_, mode != SW_HIDE);
  return kOk;
}

HRESULT CDSBasePropertyPage::Help(const char16_t*) {
  return kFalse;
}

HRESULT CDSBasePropertyPage::OnInitDialog() {
  return CDSBasePropertyPage::PropertyChanged(GUID_ALL_PROPERTIES, nullptr);
}

LRESULT CDSBasePropertyPage::OnDialogMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  // An action may release the page.
  const ComPtr<IDSPropertyPage> stay(this);
  const auto control = static_cast<std::int32_t>(wParam & 0xFFFF);
  const ControlMessages& messages = Messages();
  if (message == messages.toolTip) return FillToolTip(control, reinterpret_cast<const DSToolTipText*>(lParam));
  if (message != WM_COMMAND && message != messages.notify && message != messages.notifyComplete &&
      message != messages.scrub) {
    return 0;
  }
  lastNotification = {message, control};
  if (message == WM_COMMAND || message == messages.notify) {
    OnControlChanged(control);
  } else if (message == messages.scrub && dialog_ != nullptr) {
    const bool begins = lParam != 0;
    if (begins == scrubbing_) return 0;
    scrubbing_ = begins;
    begins ? BeginStep(nullptr) : EndStep();
  }
  return 0;
}

void CDSBasePropertyPage::BeginStep(const char16_t* name) {
  if (site_ == nullptr || site_->Undo() == nullptr) return;
  ++openSteps_;
  site_->Undo()->BeginStep(name);
}

void CDSBasePropertyPage::EndStep() {
  if (openSteps_ == 0) return;
  --openSteps_;
  if (site_->Undo() != nullptr) site_->Undo()->EndStep();
}

// The write and the action are one step.
void CDSBasePropertyPage::OnControlChanged(std::int32_t controlId) {
  const CDSPPGControlMap* const map = GetControlMap();
  const CDSPPGControlMapEntry* const entry = map == nullptr ? nullptr : map->Find(controlId);
  if (entry == nullptr || GetHwndControl(controlId) == nullptr) return;
  struct Step {
    explicit Step(CDSBasePropertyPage& page) : undo(page) { undo.Begin(page.lastNotification, &style, kOneBracket); }
    ~Step() { undo.End(); }
    CDSUndoStyleMgr undo;
    UNDO_STYLE style = kUndoStep;
  };
  const Step step(*this);
  if (entry->variable != nullptr) {
    ReadControl(*entry);
    if (entry->property != GUID_NO_PROPERTY) WriteProperty(*entry);
  }
  if (entry->action != nullptr) entry->action(*this);
}

LRESULT CDSBasePropertyPage::FillToolTip(std::int32_t controlId, const DSToolTipText* text) {
  const CDSPPGControlMap* const map = GetControlMap();
  const CDSPPGControlMapEntry* const entry = map == nullptr ? nullptr : map->Find(controlId);
  if (entry == nullptr || text == nullptr) return 0;
  return LoadStringW(GetResourceInstance(), entry->toolTip, text->buffer, text->capacity);
}

HRESULT CDSBasePropertyPage::PropertyChanged(const GUID& property, const DSVariant*) {
  const CDSPPGControlMap* const map = GetControlMap();
  if (map == nullptr) return kOk;
  for (std::size_t i = 0; i < map->count; ++i) {
    const CDSPPGControlMapEntry& entry = map->entries[i];
    if (entry.property == GUID_NO_PROPERTY || entry.variable == nullptr) continue;
    if (entry.property != property && property != GUID_ALL_PROPERTIES) continue;
    ReadVariable(entry);
    SetControlFromBoundVariable(entry.controlId);
  }
  return kOk;
}

HRESULT CDSBasePropertyPage::UpdateAnimatedControls(double) {
  const CDSPPGControlMap* const map = GetControlMap();
  if (map == nullptr) return kOk;
  for (std::size_t i = 0; i < map->count; ++i) {
    const CDSPPGControlMapEntry& entry = map->entries[i];
    if ((entry.flags & control_flags::kAnimated) == 0 || entry.variable == nullptr) continue;
    ReadVariable(entry);
    SetControlFromBoundVariable(entry.controlId);
  }
  return kOk;
}

double CDSBasePropertyPage::TimeOf(double time) const {
  if (time != kSiteTime) return time;
  return site_ == nullptr ? 0.0 : site_->CurrentTime();
}

template <class Put>
HRESULT CDSBasePropertyPage::Write(const char* call, const GUID& property, double value, double time, UNDO_STYLE style,
                                   Put put) {
  // A listener may give the page other objects.
  const ComPtr<IDSProperties> properties = properties_;
  if (!properties) return kFailed;
  if (style != kUndoBracket) BeginStep(nullptr);
  const HRESULT result = put(*properties);
  if (style != kUndoBracket) EndStep();
  if (site_ != nullptr) site_->OnPropertyAccess(call, property, value, time, result);
  return result;
}

void CDSBasePropertyPage::ReadOf(const char* call, const GUID& property, const DSVariant& value, double time,
                                 HRESULT result) const {
  if (site_ != nullptr) site_->OnPropertyAccess(call, property, value.AsNumber(), time, result);
}

HRESULT CDSBasePropertyPage::SetPlainProperty(const GUID& property, const DSVariant& value, IUnknown*,
                                              UNDO_STYLE style) {
  return Write("SetPlainProperty", property, value.AsNumber(), kSiteTime, style,
               [&](IDSProperties& properties) { return properties.PutValue(property, value); });
}

HRESULT CDSBasePropertyPage::SetAnimatedProperty(const GUID& property, const DSVariant& value, IUnknown*, double time,
                                                 UNDO_STYLE style) {
  return Write("SetAnimatedProperty", property, value.AsNumber(), time, style,
               [&](IDSProperties& properties) { return properties.PutValueAt(property, TimeOf(time), value); });
}

HRESULT CDSBasePropertyPage::GetPlainProperty(const GUID& property, DSVariant* value, IUnknown*) {
  if (value == nullptr) return kNullPointer;
  if (!properties_) return kFailed;
  const HRESULT result = properties_->GetValue(property, value);
  ReadOf("GetPlainProperty", property, *value, kSiteTime, result);
  return result;
}

HRESULT CDSBasePropertyPage::GetAnimatedProperty(const GUID& property, DSVariant* value, IUnknown*, double time) {
  if (value == nullptr) return kNullPointer;
  if (!properties_) return kFailed;
  double number = 0.0;
  const HRESULT result = properties_->GetValueAt(property, TimeOf(time), &number);
  if (result == kOk) *value = DSVariant::Of(number);
  ReadOf("GetAnimatedProperty", property, *value, time, result);
  return result;
}

void CDSBasePropertyPage::ReadVariable(const CDSPPGControlMapEntry& entry) {
  DSVariant value;
  const bool isAnimated = (entry.flags & control_flags::kAnimated) != 0;
  const HRESULT read = isAnimated ? GetAnimatedProperty(entry.property, &value, nullptr, kSiteTime)
                                  : GetPlainProperty(entry.property, &value, nullptr);
  if (read != kOk) return;
  void* const variable = entry.variable(*this);
  switch (entry.type) {
    case VT_R8: *static_cast<double*>(variable) = value.AsNumber(); break;
    case VT_I4: *static_cast<std::int32_t*>(variable) = value.whole; break;
    case VT_BOOL: *static_cast<bool*>(variable) = value.whole != 0; break;
    default: break;
  }
}

void CDSBasePropertyPage::ReadControl(const CDSPPGControlMapEntry& entry) {
  const HWND window = GetHwndControl(entry.controlId);
  void* const variable = entry.variable(*this);
  if (entry.type == VT_I4) {
    *static_cast<std::int32_t*>(variable) = static_cast<std::int32_t>(SendMessageW(window, CB_GETCURSEL, 0, 0));
  } else if (entry.type == VT_BOOL) {
    *static_cast<bool*>(variable) = SendMessageW(window, BM_GETCHECK, 0, 0) != 0;
  } else if (const auto number = ControlOf<IDSNumberControl>(window); number) {
    DSVariant value;
    if (number->GetValue(&value) == kOk) *static_cast<double*>(variable) = value.AsNumber();
  }
}

void CDSBasePropertyPage::WriteProperty(const CDSPPGControlMapEntry& entry) {
  const void* const variable = entry.variable(*this);
  if (entry.type == VT_R8) {
    const DSVariant value = DSVariant::Of(*static_cast<const double*>(variable));
    if ((entry.flags & control_flags::kAnimated) != 0) {
      SetAnimatedProperty(entry.property, value, nullptr, kSiteTime, kUndoBracket);
    } else {
      SetPlainProperty(entry.property, value, nullptr, kUndoBracket);
    }
  } else if (entry.type == VT_I4) {
    SetPlainProperty(entry.property, DSVariant::Of(*static_cast<const std::int32_t*>(variable)), nullptr, kUndoBracket);
  } else if (entry.type == VT_BOOL) {
    const std::int32_t ticked = *static_cast<const bool*>(variable) ? 1 : 0;
    SetPlainProperty(entry.property, {DSValueType::Boolean32, 0.0, ticked}, nullptr, kUndoBracket);
  }
}

DSAnimationMark CDSBasePropertyPage::MarkOf(const CDSPPGControlMapEntry& entry) const {
  const DSCurve* curve = nullptr;
  if (!properties_ || properties_->GetCurve(entry.property, &curve) != kOk) return DSAnimationMark::None;
  const double now = TimeOf(kSiteTime);
  const bool isKey = std::ranges::any_of(curve->keys, [now](const DSCurveKey& key) { return key.time == now; });
  return isKey ? DSAnimationMark::Key : DSAnimationMark::Animated;
}

HRESULT CDSBasePropertyPage::SetControlFromBoundVariable(std::int32_t controlId) {
  const CDSPPGControlMap* const map = GetControlMap();
  const CDSPPGControlMapEntry* const entry = map == nullptr ? nullptr : map->Find(controlId);
  if (entry == nullptr || entry->variable == nullptr) return kWrongArgument;
  const HWND window = GetHwndControl(controlId);
  if (window == nullptr) return kFalse;
  const void* const variable = entry->variable(*this);
  if (entry->type == VT_I4) {
    SendMessageW(window, CB_SETCURSEL, static_cast<WPARAM>(*static_cast<const std::int32_t*>(variable)), 0);
  } else if (entry->type == VT_BOOL) {
    SendMessageW(window, BM_SETCHECK, *static_cast<const bool*>(variable) ? 1 : 0, 0);
  } else if (const auto number = ControlOf<IDSNumberControl>(window); number) {
    number->SetValue(DSVariant::Of(*static_cast<const double*>(variable)));
    if ((entry->flags & control_flags::kAnimated) != 0) number->SetAnimationMark(MarkOf(*entry));
  }
  return kOk;
}

}  // namespace vblur
