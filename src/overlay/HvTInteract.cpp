#include "overlay/HvTInteract.h"

#include <cmath>

#include "overlay/Drawing.h"
#include "overlay/HvTDsObject.h"
#include "overlay/ProjectFrame.h"
#include "properties/ClassIds.h"

namespace vblur {
namespace {

constexpr std::uint32_t kTranslateFreely = 3;
constexpr float kRectTolerance = 0.01f;
constexpr double kNow = -1.0;
constexpr std::int32_t kMainButton = 1;

}  // namespace

HvTInteract::HvTInteract()
    : frameCentre_("Frame Centre", kTranslateFreely),
      srcCentre_("Src Centre", kTranslateFreely),
      viewZero_("View Zero") {
  const ProjectFrame frame = ReadProjectFrame();
  frameWidth_ = frame.width;
  frameHeight_ = frame.height;
  viewScale_ = frame.viewScale;
  AddTransformNode(frameCentre_);
  AddTransformNode(srcCentre_);
  viewSize_ = {static_cast<float>(frameWidth_), static_cast<float>(frameHeight_)};
  viewZero_.SetGroupFlags(viewZero_.GroupFlags() & ~(HvTGroup::kDrawBackground | HvTGroup::kSolid));
  AddObject(&viewZero_);
}

// A transform for the widgets attached to it, without handles of its own.
void HvTInteract::AddTransformNode(HvT2DAxisGroup& node) {
  node.SetCentre(static_cast<float>(frameWidth_) * 0.5f, static_cast<float>(frameHeight_) * 0.5f);
  node.SetVisibility(node.State() | HvTObject::kVisible);
  node.ShowOwnAxis(false);
  node.UpdateBox();
  AddObject(&node);
}

HvTInteract::~HvTInteract() {
  DeleteOverlayFont(fontBase_);
  dsObjects_.Start();
  while (const auto* node = dsObjects_.Step())
    node->element->ForgetTool();
  dsObjects_.Clear();
}

HRESULT HvTInteract::QueryInterface(const GUID& iid, void** result) {
  if (iid != classes::kHvTInteract) return CDSInteractiveTool::QueryInterface(iid, result);
  if (result == nullptr) return kNullPointer;
  AddRef();
  *result = this;
  return kOk;
}

void HvTInteract::AddDsObject(HvTDsObject* binding) {
  if (binding == nullptr) return;
  if (!dsObjects_.Contains(binding)) dsObjects_.Append(binding);
  binding->JoinTool(this);
  binding->Refresh();
  Redraw();
}

void HvTInteract::RemoveDsObject(HvTDsObject* binding) {
  dsObjects_.Remove(binding);
}

bool HvTInteract::RectDiffers(HvPoint origin, HvPoint size) const {
  const auto differs = [](float a, float b) { return std::abs(a - b) > kRectTolerance; };
  return differs(origin.x, viewOrigin_.x) || differs(origin.y, viewOrigin_.y) || differs(size.x, viewSize_.x) ||
         differs(size.y, viewSize_.y);
}

std::int32_t HvTInteract::SetViewRect(HvPoint origin, HvPoint size) {
  if (!RectDiffers(origin, size)) return 0;
  viewOrigin_ = origin;
  viewSize_ = size;
  const auto middle = [](float from, float extent) {
    return static_cast<float>(static_cast<double>(from) + static_cast<double>(extent) * 0.5);
  };
  srcCentre_.SetCentre(middle(origin.x, size.x), middle(origin.y, size.y));
  Redraw();
  return 1;
}

std::optional<double> HvTInteract::ReadAnimated(const GUID& property, double time) {
  if (linked_ == 0 || property == GUID_NO_PROPERTY) return std::nullopt;
  DSVariant value;
  if (GetAnimatedProperty(property, &value, nullptr, time) < 0) return std::nullopt;
  return value.AsNumber();
}

std::optional<double> HvTInteract::ReadIfAffected(const GUID& changed, const GUID& bound) {
  if (bound != changed && changed != GUID_ALL_PROPERTIES) return std::nullopt;
  return ReadAnimated(bound, kNow);
}

bool HvTInteract::WriteAnimated(const GUID& property, double value) {
  if (linked_ == 0 || property == GUID_NO_PROPERTY) return false;
  return SetAnimatedProperty(property, DSVariant::Of(value), nullptr, kNow, 0) >= 0;
}

void HvTInteract::ShowControls(bool show) {
  displayFlags_ = show ? displayFlags_ | kControlsShown : displayFlags_ & ~static_cast<std::uint32_t>(kControlsShown);
  Redraw();
}

HRESULT HvTInteract::OnPropertyChanged(const GUID& property, const DSVariant* value, std::uint32_t flags) {
  const HRESULT result = CDSInteractiveTool::OnPropertyChanged(property, value, flags);
  if (result < 0) return result;
  bool changed = false;
  dsObjects_.Start();
  while (const auto* node = dsObjects_.Step()) {
    if (node->element->OnPropertyChange(property, value) != 0) changed = true;
  }
  if (changed) Redraw();
  return result;
}

HRESULT HvTInteract::OnOnTimeChange(double time) {
  if (!HasOperator()) return kOk;
  const HRESULT result = CDSInteractiveTool::OnOnTimeChange(time);
  if (result < 0) return result;
  dsObjects_.Start();
  while (const auto* node = dsObjects_.Step())
    node->element->OnTime(time);
  Redraw();
  return result;
}

bool HvTInteract::TakesPen(const tagVWPENEVENT& event) const {
  return (displayFlags_ & kControlsShown) != 0 && event.button == kMainButton;
}

// Not while the pen is down: it would move what is being dragged.
void HvTInteract::CatchUp() {
  if (catchUp_ && !IsPenDown()) catchUp_();
}

void HvTInteract::PostPen(std::uint32_t id, const tagVWPENEVENT& event) {
  CatchUp();
  const auto inPixels = [this](double world) { return static_cast<float>(world / static_cast<double>(viewScale_)); };
  if (PostMessage(HvMessage::OfPosition(id, {inPixels(event.x), inPixels(event.y)}))) Redraw();
}

HRESULT HvTInteract::OnPenDown(const tagVWPENEVENT& event) {
  if (!TakesPen(event)) return CDSInteractiveTool::OnPenDown(event);
  PostPen(kPenDown, event);
  return OnBeginInteraction(event);
}

HRESULT HvTInteract::OnPenMove(const tagVWPENEVENT& event) {
  if ((displayFlags_ & kControlsShown) == 0) return CDSInteractiveTool::OnPenMove(event);
  PostPen(kPenMoved, event);
  return OnDoInteraction(event);
}

HRESULT HvTInteract::OnPenUp(const tagVWPENEVENT& event) {
  if (!TakesPen(event)) return CDSInteractiveTool::OnPenUp(event);
  try {
    PostPen(kPenUp, event);
  } catch (...) {
    // A listener threw: end the interaction all the same.
    TerminateInteraction();
    throw;
  }
  return TerminateInteraction();
}

HRESULT HvTInteract::OnLinkToOperator(IUnknown* newOperator) {
  const HRESULT result = CDSInteractiveTool::OnLinkToOperator(newOperator);
  linked_ = result < 0 ? 0 : 1;
  if (result < 0 && HasOperator()) CDSInteractiveTool::OnUnlinkFromOperator();
  return result;
}

HRESULT HvTInteract::OnUnlinkFromOperator() {
  linked_ = 0;
  return CDSInteractiveTool::OnUnlinkFromOperator();
}

HRESULT HvTInteract::OnLinkToViewer(IVWViewer* newViewer) {
  const HRESULT result = CDSInteractiveTool::OnLinkToViewer(newViewer);
  linked_ = result < 0 ? 0 : 1;
  if (result < 0 && HasViewer()) CDSInteractiveTool::OnUnlinkFromViewer();
  if (result >= 0) Redraw();
  return result;
}

HRESULT HvTInteract::OnUnlinkFromViewer() {
  InvalidateRect(GetViewerWindow(), nullptr, false);
  Redraw();
  linked_ = 0;
  return CDSInteractiveTool::OnUnlinkFromViewer();
}

}  // namespace vblur
