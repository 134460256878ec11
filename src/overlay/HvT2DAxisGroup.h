// An axis control that is the parent of widgets: they are drawn and picked in its own space, and come before
// its own handles. With its own axis hidden it is a transform that is not seen.
#pragma once

#include "overlay/HvT2DAxis.h"
#include "overlay/HvTContainer.h"

namespace vblur {

class HvT2DAxisGroup : public HvT2DAxis {
 public:
  enum GroupFlag : std::uint32_t { kOwnAxis = 1 };

  HvT2DAxisGroup(const char* name, std::uint32_t handleMask) : HvT2DAxis(name, handleMask) {}
  // Group and children may go in any order: children that outlive it have neither parent nor manager.
  ~HvT2DAxisGroup() override = default;

  HvPick Pick(HvPoint pos, HvPoint tolerance) override;
  void Draw() override;
  // The overlay's matrix stack leads from the own space while children are picked and told of the pen.
  void PushTransform() override;
  void PopTransform() override;
  void ChildChanged(HvTObject* child) override;
  void SetManager(HvTManager* manager) override;
  // The child's box is the children's until ChildChanged. Its parent stays unset: attach with SetParent.
  std::int32_t AddChild(HvTObject* child) override;
  std::int32_t RemoveChild(HvTObject* child) override;
  void SetTarget(HvTObject* object) override;
  // Handles and children, in the parent's space.
  void ComputeBox(HvBox& box) override;

  std::uint32_t groupFlags() const { return groupFlags_; }
  // Whether the control itself is drawn and picked.
  bool showsOwnAxis() const { return (groupFlags_ & kOwnAxis) != 0; }
  void ShowOwnAxis(bool show);
  // The own axis begins with the top of the overlay's matrix stack.
  void DrawAxisUnderStackMatrix(bool under) { stackMatrixAxis_ = under; }
  // Where new children go: those of the second container draw by the overlay's matrix stack alone, OpenGL's
  // matrix stays the parent's.
  void AddIntoSecond(bool second) { intoSecond_ = second; }

  HvTContainer& children() { return children_; }
  HvTContainer& secondChildren() { return secondChildren_; }
  // Of all children, in own space; with the own origin in it.
  const HvBox& childBox() const { return childBox_; }

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
