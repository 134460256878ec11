#include "overlay/HvTManager.h"

#include <cmath>

#include "overlay/ScopeExit.h"

namespace vblur {
namespace {

constexpr float kStill = 0.001f;
constexpr HvPoint kTipOffset{8.0f, 8.0f};

}  // namespace

HvTManager::~HvTManager() {
  // Before the base classes: widgets call Forget.
  ClearChildren();
}

std::int32_t HvTManager::AddObject(HvTObject* object) {
  if (object == nullptr || Children().Contains(object)) return 0;
  object->SetParent(nullptr);
  Append(object);
  object->SetManager(this);
  if (object->IsVisible()) repaint_ = true;
  return 1;
}

bool HvTManager::PostMessage(const HvMessage& message) {
  HandleMessage(message, nullptr);
  return repaint_;
}

void HvTManager::Forget(const HvTObject& object) {
  if (hover_ == &object) hover_ = nullptr;
  if (fallback_ == &object) fallback_ = nullptr;
}

void HvTManager::Draw() {
  DrawChildren();
  repaint_ = false;
  if (tipsEnabled_ && hover_ != nullptr) hover_->DrawTip(penPos_ + kTipOffset);
}

void HvTManager::HandleMessage(const HvMessage& message, HvMessageSender*) {
  const std::uint32_t id = message.Id();
  if (id != kPenMoved && id != kPenDown && id != kPenUp) return;
  TakePosition(message);
  if (id == kPenDown) penDown_ = true;
  if (id == kPenUp) penDown_ = false;
  // A nested message, for example from a modal loop of the host, only updates the pen state.
  if (handling_) return;
  handling_ = true;
  const ScopeExit done([this] { handling_ = false; });
  if (id == kPenDown) {
    PressAtPen();
  } else if (id == kPenUp) {
    ReleaseAtPen();
  } else {
    penDown_ ? DragAtPen() : HoverAtPen();
    // The tip moves with the pen.
    if (hover_ != nullptr && tipsEnabled_) repaint_ = true;
  }
}

void HvTManager::TakePosition(const HvMessage& message) {
  if (!message.IsPosition()) return;
  penDelta_ = message.AsPosition() - penPos_;
  penPos_ = message.AsPosition();
}

void HvTManager::Rescan() {
  picking_ = true;
  const ScopeExit done([this] { picking_ = false; });
  hover_ = PickChildren(penPos_, tolerance_).Object();
  if (hover_ == nullptr && fallback_ != nullptr && fallback_->IsPickable() && fallback_->IsVisible()) PickFallback();
}

void HvTManager::PickFallback() {
  hover_ = fallback_;
  fallback_->SetTarget(nullptr);
  HvTObject* top = fallback_;
  for (HvTObject* above = top->Parent(); above != nullptr; above = above->Parent()) {
    above->SetTarget(top);
    top = above;
  }
  SetHit(top);
}

void HvTManager::EnterAtPen() {
  if (EnterHit(penPos_) != 0) repaint_ = true;
}

void HvTManager::HoverAtPen() {
  if (std::abs(penDelta_.x) <= kStill && std::abs(penDelta_.y) <= kStill) return;
  const HvTObject* const before = hover_;
  LeaveHit();
  Rescan();
  EnterHit(penPos_);
  if (hover_ != before) repaint_ = true;
}

void HvTManager::DragAtPen() {
  if (Hit() != nullptr) repaint_ = DragHit(penPos_) != 0;
}

void HvTManager::PressAtPen() {
  if (LeaveHit() != 0) repaint_ = true;
  Rescan();
  if (PressHit(penPos_) != 0) repaint_ = true;
}

void HvTManager::ReleaseAtPen() {
  if (ReleaseHit() != 0) repaint_ = true;
  Rescan();
  EnterAtPen();
}

}  // namespace vblur
