#include "platform/CDSInteractiveTool.h"

#include <utility>

#include "platform/ComPtr.h"
#include "sdk/viewer/ToolObserver.h"

namespace vblur {

namespace host {

namespace {

ToolObserver* toolObserver = nullptr;

}  // namespace

void UseToolObserver(ToolObserver* observer) {
  toolObserver = observer;
}

}  // namespace host

namespace {

constexpr double kViewerTime = -1.0;

}  // namespace

class CDSInteractiveTool::Listener : public IDSPropertyNotify {
 public:
  explicit Listener(CDSInteractiveTool& tool) : tool_(tool) {}

  void OnPropertyChanged(const GUID& property, const DSVariant* value, std::uint32_t flags) override {
    tool_.OnPropertyChanged(property, value, flags);
  }

 private:
  CDSInteractiveTool& tool_;
};

CDSInteractiveTool::CDSInteractiveTool() : listener_(std::make_unique<Listener>(*this)) {}

CDSInteractiveTool::~CDSInteractiveTool() {
  CDSInteractiveTool::OnUnlinkFromOperator();
  CDSInteractiveTool::OnUnlinkFromViewer();
}

HRESULT CDSInteractiveTool::QueryInterface(const GUID& iid, void** result) {
  if (result == nullptr) return kNullPointer;
  *result = nullptr;
  if (iid == IUnknown::kIid || iid == IViewerLayer::kIid) {
    *result = static_cast<IViewerLayer*>(this);
  } else if (iid == IViewerEventSink::kIid) {
    *result = static_cast<IViewerEventSink*>(this);
  } else if (iid == IDSPropertyNotifySink::kIid) {
    *result = static_cast<IDSPropertyNotifySink*>(this);
  } else if (iid == IDSTimeNotifySink::kIid) {
    *result = static_cast<IDSTimeNotifySink*>(this);
  } else {
    return kNoInterface;
  }
  AddReference();
  return kOk;
}

HRESULT CDSInteractiveTool::OnRender(IVWSurface*) {
  return kOk;
}

HRESULT CDSInteractiveTool::OnLinkToOperator(IUnknown* newOperator) {
  if (newOperator == nullptr) return kNullPointer;
  ComPtr<IDSProperties> properties;
  if (newOperator->QueryInterface(IDSProperties::kIid, properties.Receive()) != kOk) return kNoInterface;
  CDSInteractiveTool::OnUnlinkFromOperator();
  if (const HRESULT result = properties->Advise(listener_.get()); result < 0) return result;
  operator_ = properties.get();
  return kOk;
}

HRESULT CDSInteractiveTool::OnUnlinkFromOperator() {
  if (operator_ == nullptr) return kOk;
  return std::exchange(operator_, nullptr)->Unadvise(listener_.get());
}

HRESULT CDSInteractiveTool::OnLinkToViewer(IVWViewer* newViewer) {
  if (newViewer == nullptr) return kNullPointer;
  viewer_ = newViewer;
  return kOk;
}

HRESULT CDSInteractiveTool::OnUnlinkFromViewer() {
  viewer_ = nullptr;
  return kOk;
}

HRESULT CDSInteractiveTool::OnPenDown(const tagVWPENEVENT&) {
  return kFalse;
}

HRESULT CDSInteractiveTool::OnPenMove(const tagVWPENEVENT&) {
  return kFalse;
}

HRESULT CDSInteractiveTool::OnPenUp(const tagVWPENEVENT&) {
  return kFalse;
}

HRESULT CDSInteractiveTool::OnPropertyChanged(const GUID&, const DSVariant*, std::uint32_t) {
  return kOk;
}

HRESULT CDSInteractiveTool::OnOnTimeChange(double) {
  return kOk;
}

HRESULT CDSInteractiveTool::OnBeginInteraction(const tagVWPENEVENT& event) {
  return viewer_ == nullptr ? kOk : viewer_->BeginInteraction(event);
}

HRESULT CDSInteractiveTool::OnDoInteraction(const tagVWPENEVENT& event) {
  return viewer_ == nullptr ? kOk : viewer_->DoInteraction(event);
}

HRESULT CDSInteractiveTool::TerminateInteraction() {
  return viewer_ == nullptr ? kOk : viewer_->EndInteraction();
}

HRESULT CDSInteractiveTool::InvalidateLayer(std::int32_t, const void* area) {
  return viewer_ == nullptr ? kOk : viewer_->InvalidateLayer(static_cast<IViewerLayer*>(this), area);
}

HWND CDSInteractiveTool::GetViewerWindow() const {
  return viewer_ == nullptr ? nullptr : viewer_->Window();
}

double CDSInteractiveTool::TimeOf(double time) const {
  if (time != kViewerTime) return time;
  return viewer_ == nullptr ? 0.0 : viewer_->CurrentTime();
}

HRESULT CDSInteractiveTool::GetAnimatedProperty(const GUID& property, DSVariant* value, IUnknown*, double time) {
  if (value == nullptr) return kNullPointer;
  if (operator_ == nullptr) return kFailed;
  double number = 0.0;
  const HRESULT result = operator_->GetValueAt(property, TimeOf(time), &number);
  if (result == kOk) *value = DSVariant::Of(number);
  if (host::toolObserver != nullptr) host::toolObserver->OnGetAnimatedProperty(property, number, time, result);
  return result;
}

HRESULT CDSInteractiveTool::SetAnimatedProperty(const GUID& property, const DSVariant& value, IUnknown*, double time,
                                                std::uint32_t) {
  if (operator_ == nullptr) return kFailed;
  const HRESULT result = operator_->PutValueAt(property, TimeOf(time), value);
  if (host::toolObserver != nullptr) {
    host::toolObserver->OnSetAnimatedProperty(property, value.AsNumber(), time, result);
  }
  return result;
}

}  // namespace vblur
