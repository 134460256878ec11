#include "overlay/HvTGroup.h"

#include "overlay/Drawing.h"
#include "overlay/OverlayColours.h"

namespace vblur {

HvTGroup::HvTGroup(const char* name) : HvTObject(name), backgroundColour_(kHvGrey) {
  PutFlag(kOriginSettable, false);
  PutFlag(kSizeSettable, false);
}

HvPick HvTGroup::Pick(HvPoint pos, HvPoint tolerance) {
  const HvPick pick = PickChildren(pos, tolerance);
  if (Hit() != nullptr) {
    HvTObject::SetTarget(Hit());
  } else {
    ClearTarget();
  }
  if (pick.EndsSearch()) return pick;
  return (groupFlags_ & kSolid) != 0 ? HvPick::Swallowed() : HvPick();
}

void HvTGroup::Draw() {
  if ((groupFlags_ & kDrawBackground) != 0) DrawBackground();
  DrawChildren();
}

void HvTGroup::DrawBackground() {
  SetGlColour((groupFlags_ & kGreyBackground) != 0 ? kHvGrey : backgroundColour_);
  const HvBox area = Box();
  DrawRectFilled(area.minX, area.minY, area.maxX, area.maxY);
}

std::int32_t HvTGroup::Drag(HvPoint) {
  return 0;
}

void HvTGroup::ChildChanged(HvTObject*) {
  HvBox area;
  PutFlag(kHasBox, Bounds(area) != kSomeWithoutBox);
  PutBox({area.minX, area.minY}, {area.maxX - area.minX, area.maxY - area.minY});
}

void HvTGroup::SetManager(HvTManager* manager) {
  HvTObject::SetManager(manager);
  for (const auto* node = Children().First(); node != nullptr; node = node->next)
    node->element->SetManager(manager);
}

std::int32_t HvTGroup::AddChild(HvTObject* child) {
  const bool wasEmpty = Children().First() == nullptr;
  if (Append(child) == 0) return 0;
  PutFlag(kHasBox, BoxState() != kSomeWithoutBox);
  child->SetManager(Manager());
  child->SetParent(this);
  if (!child->HasBox()) return 1;
  HvBox area = child->Box();
  if (wasEmpty) {
    StoreBox(child->Origin(), child->Size());
    return 1;
  }
  area.Grow(Box());
  StoreBox({area.minX, area.minY}, {area.maxX - area.minX, area.maxY - area.minY});
  return 1;
}

std::int32_t HvTGroup::RemoveChild(HvTObject* child) {
  if (Remove(child) == 0) return 0;
  if (Target() == child) ClearTarget();
  child->SetParent(nullptr);
  ChildChanged(child);
  return 1;
}

void HvTGroup::SetTarget(HvTObject* object) {
  HvTObject::SetTarget(object);
  SetHit(Target());
}

}  // namespace vblur
