// An axis control with children, drawn and picked in its own space and before its own handles. With its axis hidden it
// is an invisible transform.
#pragma once

#include "overlay/HvT2DAxis.h"
#include "overlay/HvTContainer.h"

namespace vblur {

class HvT2DAxisGroup : public HvT2DAxis {
 public:
  enum GroupFlag : std::uint32_t { kOwnAxis = 1 };

  HvT2DAxisGroup(const char* name, std::uint32_t handleMask) : HvT2DAxis(name, handleMask) {}
  // Children may outlive the group; they are detached.
  ~HvT2DAxisGroup() override = default;

  HvPick Pick(HvPoint pos, HvPoint tolerance) override;
  void Draw() override;
  // Around operations on children the overlay's matrix stack maps from the own space.
  void PushTransform() override;
  void PopTransform() override;
  void ChildChanged(HvTObject* child) override;
  void SetManager(HvTManager* manager) override;
  // The child's box replaces the children's box until ChildChanged. Leaves the parent unset: attach with SetParent.
  std::int32_t AddChild(HvTObject* child) override;
  std::int32_t RemoveChild(HvTObject* child) override;
  void SetTarget(HvTObject* object) override;
  // Bounds of handles and children, in the parent's space.
  void ComputeBox(HvBox& box) override;

  std::uint32_t GroupFlags() const { return groupFlags_; }
  // Whether the control itself is drawn and picked.
  bool ShowsOwnAxis() const { return (groupFlags_ & kOwnAxis) != 0; }
  void ShowOwnAxis(bool show);
  // Draw the own axis under the top of the overlay's matrix stack.
  void DrawAxisUnderStackMatrix(bool under) { stackMatrixAxis_ = under; }
  // Where new children go. Those of the second container are drawn under the overlay's matrix stack only; the OpenGL
  // matrix stays the parent's.
  void AddIntoSecond(bool second) { intoSecond_ = second; }

  HvTContainer& Children() { return children_; }
  HvTContainer& SecondChildren() { return secondChildren_; }
  // Bounds of all children in own space, including the own origin.
  const HvBox& ChildBox() const { return childBox_; }

 private:
  void DrawFirstChildren();
  void DrawSecondChildren();

  std::uint32_t groupFlags_ = kOwnAxis;
  bool stackMatrixAxis_ = false;
  bool intoSecond_ = false;
  HvBox childBox_{0.0f, 0.0f, 0.0f, 0.0f};
  HvTContainer children_;
  HvTContainer secondChildren_;
};

}  // namespace vblur
