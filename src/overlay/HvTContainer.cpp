#include "overlay/HvTContainer.h"

#include "overlay/ScopeExit.h"

namespace vblur {
namespace {

using AtPoint = std::int32_t (HvTObject::*)(HvPoint);
using AtLeaf = std::int32_t (HvTObject::*)();

// Returns 0 where the chain of targets ends early, after a widget was removed.
std::int32_t Descend(HvTObject* object, HvPoint pos, AtPoint act) {
  if (object == nullptr) return 0;
  HvTObject* const next = object->Target();
  if (next == object) return (object->*act)(pos);
  const HvPoint local = object->ToLocal(pos);
  object->PushTransform();
  const ScopeExit pop([object] { object->PopTransform(); });
  return Descend(next, local, act);
}

std::int32_t Descend(HvTObject* object, AtLeaf act) {
  while (object != nullptr && object->Target() != object)
    object = object->Target();
  return object == nullptr ? 0 : (object->*act)();
}

bool Reaches(const HvTObject& child, HvPoint pos, HvPoint tolerance) {
  const HvBox box = child.Box();
  return pos.x + tolerance.x >= box.minX && pos.y + tolerance.y >= box.minY && box.maxX >= pos.x - tolerance.x &&
         box.maxY >= pos.y - tolerance.y;
}

}  // namespace

HvTContainer::~HvTContainer() {
  ClearChildren();
}

std::int32_t HvTContainer::Bounds(HvBox& box) {
  boxState_ = kNoChildren;
  if (children_.First() == nullptr) {
    box = {0.0f, 0.0f, 0.0f, 0.0f};
    return boxState_;
  }
  box = {};
  for (const auto* node = children_.First(); node != nullptr; node = node->next) {
    const HvTObject& child = *node->element;
    if (!child.HasBox()) {
      boxState_ = kSomeWithoutBox;
      continue;
    }
    if (boxState_ == kNoChildren) boxState_ = kAllWithBox;
    // Both corners: sizes may be negative.
    box.Grow(child.Origin());
    box.Grow(child.Origin() + child.Size());
  }
  return boxState_;
}

std::int32_t HvTContainer::Append(HvTObject* child) {
  if (child == nullptr || children_.Contains(child)) return 0;
  children_.Append(child);
  boxState_ = child->HasBox() ? kAllWithBox : kSomeWithoutBox;
  return 1;
}

std::int32_t HvTContainer::Remove(HvTObject* child) {
  if (child == nullptr || !children_.Remove(child)) return 0;
  if (hit_ == child) hit_ = nullptr;
  return 1;
}

void HvTContainer::ClearChildren() {
  children_.Start();
  while (const auto* node = children_.Step())
    node->element->SetParent(nullptr);
  children_.Start();
  while (auto* node = children_.Step()) {
    HvTObject* const child = children_.RemoveNode(node);
    if (ownsChildren_) delete child;
  }
  hit_ = nullptr;
}

void HvTContainer::DrawChildren() {
  children_.Start();
  while (const auto* node = children_.Step()) {
    if (node->element->IsVisible()) node->element->Draw();
  }
}

HvPick HvTContainer::PickChildren(HvPoint pos, HvPoint tolerance) {
  for (const auto* node = children_.Last(); node != nullptr; node = node->previous) {
    const HvPick pick = PickChild(*node->element, pos, tolerance);
    if (!pick.EndsSearch()) continue;
    hit_ = pick.IsSwallowed() ? nullptr : node->element;
    return pick;
  }
  hit_ = nullptr;
  return {};
}

HvPick HvTContainer::PickChild(HvTObject& child, HvPoint pos, HvPoint tolerance) {
  HvPick pick;
  if (child.IsPickable() && child.IsVisible() && (!child.HasBox() || Reaches(child, pos, tolerance))) {
    child.PushTransform();
    const ScopeExit pop([&child] { child.PopTransform(); });
    pick = child.Pick(pos, tolerance);
  }
  if (!pick.EndsSearch()) child.ClearTarget();
  return pick;
}

std::int32_t HvTContainer::PressHit(HvPoint pos) {
  return Descend(hit_, pos, &HvTObject::Press);
}

std::int32_t HvTContainer::DragHit(HvPoint pos) {
  return Descend(hit_, pos, &HvTObject::Drag);
}

std::int32_t HvTContainer::EnterHit(HvPoint pos) {
  return Descend(hit_, pos, &HvTObject::Enter);
}

std::int32_t HvTContainer::LeaveHit() {
  return Descend(hit_, &HvTObject::Leave);
}

std::int32_t HvTContainer::ReleaseHit() {
  return Descend(hit_, &HvTObject::Release);
}

}  // namespace vblur
