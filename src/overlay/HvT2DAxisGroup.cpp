#include "overlay/HvT2DAxisGroup.h"

#include <cmath>

#include <GL/gl.h>

#include "overlay/ScopeExit.h"

namespace vblur {

void HvT2DAxisGroup::ShowOwnAxis(bool show) {
  groupFlags_ = show ? groupFlags_ | kOwnAxis : groupFlags_ & ~static_cast<std::uint32_t>(kOwnAxis);
}

HvPick HvT2DAxisGroup::Pick(HvPoint pos, HvPoint tolerance) {
  const HvPoint local = ToLocal(pos);
  const HvPoint scale = FullScale();
  const HvPoint localTolerance{tolerance.x / std::abs(scale.x), tolerance.y / std::abs(scale.y)};
  ClearTarget();
  HvPick pick;
  for (HvTContainer* container : {&children_, &secondChildren_}) {
    pick = container->PickChildren(local, localTolerance);
    if (pick.Object() == nullptr) continue;
    HvTObject::SetTarget(container->Hit());
    return pick;
  }
  return ShowsOwnAxis() ? HvT2DAxis::Pick(pos, tolerance) : pick;
}

void HvT2DAxisGroup::Draw() {
  UpdateMatrices();
  if (ShowsOwnAxis()) {
    if (stackMatrixAxis_) {
      glPushMatrix();
      MultiplyByStackTop();
    }
    HvT2DAxis::Draw();
    if (stackMatrixAxis_) glPopMatrix();
  }
  DrawSecondChildren();
  DrawFirstChildren();
}

void HvT2DAxisGroup::DrawSecondChildren() {
  PushTransform();
  const ScopeExit pop([this] { PopTransform(); });
  secondChildren_.DrawChildren();
}

void HvT2DAxisGroup::DrawFirstChildren() {
  const std::uint32_t mask = EffectiveMask();
  glPushMatrix();
  glTranslatef((mask & kTranslateX) != 0 ? Centre().x : 0.0f, (mask & kTranslateY) != 0 ? Centre().y : 0.0f, 0.0f);
  if ((mask & kRotate) != 0) glRotatef(Rotation(), 0.0f, 0.0f, 1.0f);
  const HvPoint scale = FullScale();
  if ((mask & (kAnyScale | kAspect)) != 0) glScalef(scale.x, scale.y, 1.0f);
  children_.DrawChildren();
  glPopMatrix();
}

void HvT2DAxisGroup::PushTransform() {
  UpdateMatrices();
  OverlayMatrixStack::Get().Push();
  OverlayMatrixStack::Get().Multiply(Forward());
}

void HvT2DAxisGroup::PopTransform() {
  OverlayMatrixStack::Get().Pop();
}

void HvT2DAxisGroup::ChildChanged(HvTObject* child) {
  if (child == nullptr) return;
  HvBox second;
  HvBox first;
  const std::int32_t secondState = secondChildren_.Bounds(second);
  const std::int32_t firstState = children_.Bounds(first);
  const bool allHaveBoxes = secondState != HvTContainer::kSomeWithoutBox && firstState != HvTContainer::kSomeWithoutBox;
  childBox_ = {};
  if (allHaveBoxes) {
    // Without second children `second` is the point 0, 0, so that the box always holds the origin.
    childBox_ = second;
    if (firstState == HvTContainer::kAllWithBox) childBox_.Grow(first);
  }
  PutFlag(kHasBox, allHaveBoxes);
  UpdateBox();
}

void HvT2DAxisGroup::SetManager(HvTManager* manager) {
  HvT2DAxis::SetManager(manager);
  for (const HvTContainer* container : {&children_, &secondChildren_}) {
    for (const auto* node = container->Children().First(); node != nullptr; node = node->next)
      node->element->SetManager(manager);
  }
}

std::int32_t HvT2DAxisGroup::AddChild(HvTObject* child) {
  HvTContainer& container = intoSecond_ ? secondChildren_ : children_;
  if (container.Append(child) == 0) return 0;
  PutFlag(kHasBox, container.BoxState() != HvTContainer::kSomeWithoutBox);
  child->SetManager(Manager());
  if (!child->HasBox()) return 1;
  childBox_ = child->Box();
  UpdateBox();
  return 1;
}

std::int32_t HvT2DAxisGroup::RemoveChild(HvTObject* child) {
  // From both: a child may be listed in each.
  const std::int32_t fromFirst = children_.Remove(child);
  const std::int32_t fromSecond = secondChildren_.Remove(child);
  if (fromFirst == 0 && fromSecond == 0) return 0;
  if (Target() == child) ClearTarget();
  child->SetManager(nullptr);
  child->SetParent(nullptr);
  ChildChanged(child);
  return 1;
}

void HvT2DAxisGroup::SetTarget(HvTObject* object) {
  HvTObject::SetTarget(object);
  HvTContainer& container = children_.Children().Contains(Target()) ? children_ : secondChildren_;
  container.SetHit(Target());
}

void HvT2DAxisGroup::ComputeBox(HvBox& box) {
  HvT2DAxis::ComputeBox(box);
  const bool isEmpty = children_.Children().First() == nullptr && secondChildren_.Children().First() == nullptr;
  if (isEmpty || !HasBox()) return;
  UpdateMatrices();
  const HvBox& own = childBox_;
  for (const HvPoint corner : {HvPoint{own.minX, own.minY}, HvPoint{own.minX, own.maxY}, HvPoint{own.maxX, own.maxY},
                               HvPoint{own.maxX, own.minY}})
    box.Grow(Forward().Map(corner));
}

}  // namespace vblur
