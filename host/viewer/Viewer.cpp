#include "host/viewer/Viewer.h"

#include <algorithm>
#include <utility>

#include "host/properties/PropertyText.h"
#include "sdk/viewer/EditedObjects.h"

namespace vblur::host {

namespace {

std::string Describe(const tagVWPENEVENT& event) {
  return "button " + std::to_string(event.button) + ", " + FormatNumber(event.x) + ", " + FormatNumber(event.y);
}

}  // namespace

template <typename Call>
HRESULT Viewer::Made(const char* object, const std::string& text, Call call) const {
  return NotedCall(
      trace_, object, [&] { return text; }, call);
}

HRESULT Viewer::QueryInterface(const GUID& iid, void** result) {
  if (result == nullptr) return kNullPointer;
  *result = iid == IUnknown::kIid || iid == IVWViewer::kIid ? static_cast<IVWViewer*>(this) : nullptr;
  if (*result == nullptr) return kNoInterface;
  AddRef();
  return kOk;
}

std::uint32_t Viewer::AddRef() {
  return references_.Add();
}

std::uint32_t Viewer::Release() {
  const std::uint32_t left = references_.Drop();
  if (left == 0) delete this;
  return left;
}

HRESULT Viewer::LinkToOperator(Context& context) {
  if (edited_ == nullptr) return kOk;
  const HRESULT result = Made("tool", "OnLinkToOperator()", [&] { return context.layer->OnLinkToOperator(edited_); });
  context.linkedToOperator = result >= 0;
  return result;
}

void Viewer::UnlinkFromOperator(Context& context) {
  if (!std::exchange(context.linkedToOperator, false)) return;
  Made("tool", "OnUnlinkFromOperator()", [&] { return context.layer->OnUnlinkFromOperator(); });
}

void Viewer::UnlinkFromViewer(Context& context) {
  Made("tool", "OnUnlinkFromViewer()", [&] { return context.layer->OnUnlinkFromViewer(); });
}

HRESULT Viewer::Link(Context& context) {
  // The viewer first: properties are read at its time.
  HRESULT result = Made("tool", "OnLinkToViewer()", [&] { return context.layer->OnLinkToViewer(this); });
  if (result < 0) return result;
  result = LinkToOperator(context);
  if (result < 0) UnlinkFromViewer(context);
  return result;
}

Viewer::~Viewer() {
  Edit(nullptr);
  Clear();
}

void Viewer::Edit(IUnknown* edited) {
  if (edited == edited_) return;
  edited_ = edited;
  ShowInViewer(edited, this);
  for (Context& context : contexts_) {
    UnlinkFromOperator(context);
    LinkToOperator(context);
  }
}

void Viewer::Clear() {
  while (!contexts_.empty())
    RemoveContext(contexts_.back().handle);
}

HRESULT Viewer::PushContext(std::int32_t kind, IUnknown* tool, std::uintptr_t* context) {
  if (tool == nullptr || context == nullptr) return kNullPointer;
  *context = 0;
  if (kind != kVWInteractiveContext) return kWrongArgument;
  Context pushed;
  if (tool->QueryInterface(IViewerLayer::kIid, pushed.layer.Receive()) != kOk) return kNoInterface;
  pushed.events = pushed.layer.As<IViewerEventSink>();
  pushed.times = pushed.layer.As<IDSTimeNotifySink>();
  if (const HRESULT result = Link(pushed); result < 0) return result;
  pushed.handle = ++lastHandle_;
  *context = pushed.handle;
  contexts_.push_back(std::move(pushed));
  invalid_ = true;
  return kOk;
}

HRESULT Viewer::RemoveContext(std::uintptr_t context) {
  const auto found = std::ranges::find(contexts_, context, &Context::handle);
  if (context == 0 || found == contexts_.end()) return kWrongArgument;
  Context removed = std::move(*found);
  contexts_.erase(found);
  if (penOwner_ == removed.handle) {
    penOwner_ = 0;
    EndInteraction();
  }
  UnlinkFromOperator(removed);
  UnlinkFromViewer(removed);
  invalid_ = true;
  return kOk;
}

HRESULT Viewer::Hand(const Context& context, const char* name, PenCall call, const tagVWPENEVENT& event) {
  return Made("tool", std::string(name) + "(" + Describe(event) + ")",
              [&] { return (context.events.get()->*call)(event); });
}

HRESULT Viewer::Offer(const char* name, PenCall call, const tagVWPENEVENT& event) {
  // A copy: tools may push and remove tools.
  auto contexts = contexts_;
  std::ranges::reverse(contexts);
  for (const Context& context : contexts) {
    if (!context.events || (penOwner_ != 0 && penOwner_ != context.handle)) continue;
    const HRESULT result = Hand(context, name, call, event);
    if (result == kFalse) continue;
    const bool isThere = std::ranges::find(contexts_, context.handle, &Context::handle) != contexts_.end();
    if (call == &IViewerEventSink::OnPenDown && result >= 0 && isThere) penOwner_ = context.handle;
    return result;
  }
  return kFalse;
}

HRESULT Viewer::PenDown(const tagVWPENEVENT& event) {
  return Offer("OnPenDown", &IViewerEventSink::OnPenDown, event);
}

HRESULT Viewer::PenMove(const tagVWPENEVENT& event) {
  return Offer("OnPenMove", &IViewerEventSink::OnPenMove, event);
}

HRESULT Viewer::PenUp(const tagVWPENEVENT& event) {
  try {
    const HRESULT result = Offer("OnPenUp", &IViewerEventSink::OnPenUp, event);
    penOwner_ = 0;
    return result;
  } catch (...) {
    penOwner_ = 0;
    throw;
  }
}

void Viewer::TellTime() {
  const auto contexts = contexts_;
  for (const Context& context : contexts) {
    if (!context.times) continue;
    Made("tool", "OnOnTimeChange(" + FormatNumber(time_) + ")", [&] { return context.times->OnOnTimeChange(time_); });
  }
}

void Viewer::SetTime(double time) {
  if (interacting_) {
    waitingTime_ = time;
    return;
  }
  if (time == time_) return;
  time_ = time;
  invalid_ = true;
  TellTime();
}

void Viewer::Render(IVWSurface& surface) {
  invalid_ = false;
  window_.Validate();
  const auto contexts = contexts_;
  for (const Context& context : contexts)
    Made("tool", "OnRender()", [&] { return context.layer->OnRender(&surface); });
}

HRESULT Viewer::InvalidateLayer(IUnknown* layer, const void* area) {
  return Made("viewer", area == nullptr ? "InvalidateLayer(all)" : "InvalidateLayer(part)", [&]() -> HRESULT {
    if (layer == nullptr) return kNullPointer;
    invalid_ = true;
    return kOk;
  });
}

HRESULT Viewer::BeginInteraction(const tagVWPENEVENT& event) {
  return Made("viewer", "BeginInteraction(" + Describe(event) + ")", [&] {
    if (!std::exchange(interacting_, true) && undo_ != nullptr) undo_->BeginStep(nullptr);
    return kOk;
  });
}

HRESULT Viewer::DoInteraction(const tagVWPENEVENT& event) {
  return Made("viewer", "DoInteraction(" + Describe(event) + ")", [] { return kOk; });
}

HRESULT Viewer::EndInteraction() {
  Made("viewer", "EndInteraction()", [&] {
    if (std::exchange(interacting_, false) && undo_ != nullptr) undo_->EndStep();
    return kOk;
  });
  if (waitingTime_) SetTime(*std::exchange(waitingTime_, std::nullopt));
  return kOk;
}

}  // namespace vblur::host
