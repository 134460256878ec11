// An ordered list of widgets; the last one is on top.
#pragma once

#include <cstdint>

#include "overlay/HvList.h"
#include "overlay/HvTObject.h"

namespace vblur {

class HvTContainer {
 public:
  // Summary of the children's boxes.
  enum BoxState : std::int32_t { kSomeWithoutBox = 0, kAllWithBox = 1, kNoChildren = 2 };

  HvTContainer() = default;
  HvTContainer(const HvTContainer&) = delete;
  HvTContainer& operator=(const HvTContainer&) = delete;
  virtual ~HvTContainer();
  // The union of the children's boxes, in their space; 0, 0, 0, 0 without children. Stores and returns the state.
  virtual std::int32_t Bounds(HvBox& box);

  // Returns 0 for null or a child that is already listed. Does not change the child.
  std::int32_t Append(HvTObject* child);
  // Returns 0 for null or a child that is not listed.
  std::int32_t Remove(HvTObject* child);
  // Clears every child's parent and manager; destroys owned children.
  void ClearChildren();

  // First to last, so that later children cover earlier ones. Skips hidden children.
  void DrawChildren();
  // Last to first, until one ends the search. `pos` and `tolerance` in the children's space.
  HvPick PickChildren(HvPoint pos, HvPoint tolerance);

  // Calls the leaf of the last hit, down the chain of targets. `pos` is in the children's space and is transformed at
  // each level.
  std::int32_t PressHit(HvPoint pos);
  std::int32_t DragHit(HvPoint pos);
  std::int32_t EnterHit(HvPoint pos);
  std::int32_t LeaveHit();
  std::int32_t ReleaseHit();

  HvList<HvTObject*>& Children() { return children_; }
  const HvList<HvTObject*>& Children() const { return children_; }
  // The child that was hit last, or contains what was hit.
  HvTObject* Hit() const { return hit_; }
  void SetHit(HvTObject* child) { hit_ = child; }
  bool OwnsChildren() const { return ownsChildren_; }
  void OwnChildren(bool owns) { ownsChildren_ = owns; }
  // After Append the state of the last child alone; Bounds computes that of all.
  std::int32_t BoxState() const { return boxState_; }

 private:
  HvPick PickChild(HvTObject& child, HvPoint pos, HvPoint tolerance);

  HvList<HvTObject*> children_;
  HvTObject* hit_ = nullptr;
  bool ownsChildren_ = false;
  std::int32_t boxState_ = kNoChildren;
};

}  // namespace vblur
