// Ordered widgets: the last one lies on top.
#pragma once

#include <cstdint>

#include "overlay/HvList.h"
#include "overlay/HvTObject.h"

namespace vblur {

class HvTContainer {
 public:
  // What the children's boxes come to.
  enum BoxState : std::int32_t { kSomeWithoutBox = 0, kAllWithBox = 1, kNoChildren = 2 };

  HvTContainer() = default;
  HvTContainer(const HvTContainer&) = delete;
  HvTContainer& operator=(const HvTContainer&) = delete;
  virtual ~HvTContainer();
  // The box that holds the boxes of all children, in the children's space; 0, 0, 0, 0 without any. Returns
  // and keeps the state.
  virtual std::int32_t Bounds(HvBox& box);

  // 0 for null or a child that is listed already; the child is not told.
  std::int32_t Append(HvTObject* child);
  // 0 for null or one that is not listed.
  std::int32_t Remove(HvTObject* child);
  // Every child forgets parent and manager; owned ones are destroyed.
  void ClearChildren();

  // From the first to the last, so that later ones cover earlier ones; hidden ones are left out.
  void DrawChildren();
  // From the last to the first, until one ends the search. `pos` and `tolerance` in the children's space.
  HvPick PickChildren(HvPoint pos, HvPoint tolerance);

  // To the leaf of what was picked last, if there is one: from its top by the targets. `pos` in the
  // children's space; each object on the way leads it into its own.
  std::int32_t PressHit(HvPoint pos);
  std::int32_t DragHit(HvPoint pos);
  std::int32_t EnterHit(HvPoint pos);
  std::int32_t LeaveHit();
  std::int32_t ReleaseHit();

  HvList<HvTObject*>& children() { return children_; }
  const HvList<HvTObject*>& children() const { return children_; }
  // The child that was picked last, or that leads to it.
  HvTObject* hit() const { return hit_; }
  void SetHit(HvTObject* child) { hit_ = child; }
  bool ownsChildren() const { return ownsChildren_; }
  void OwnChildren(bool owns) { ownsChildren_ = owns; }
  std::int32_t boxState() const { return boxState_; }
  // Of the child that was appended last alone; the next Bounds puts it right.
  void SetBoxState(std::int32_t state) { boxState_ = state; }

 private:
  HvPick PickChild(HvTObject& child, HvPoint pos, HvPoint tolerance);

  HvList<HvTObject*> children_;
  HvTObject* hit_ = nullptr;
  bool ownsChildren_ = false;
  std::int32_t boxState_ = kNoChildren;
};

}  // namespace vblur
