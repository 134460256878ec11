// A widget that contains widgets. It adds no transform; its box is the union of its children's.
#pragma once

#include "overlay/HvTContainer.h"
#include "overlay/HvTObject.h"

namespace vblur {

class HvTGroup : public HvTObject, public HvTContainer {
 public:
  enum GroupFlag : std::uint32_t {
    kDrawBackground = 1,
    kGreyBackground = 2,  // rather than the background's own colour
    kSolid = 4,           // a miss within the group ends the pick
  };

  explicit HvTGroup(const char* name);
  ~HvTGroup() override = default;

  HvPick Pick(HvPoint pos, HvPoint tolerance) override;
  void Draw() override;
  std::int32_t Drag(HvPoint pos) override;
  void ChildChanged(HvTObject* child) override;
  HvPoint ToLocal(HvPoint pos) override { return pos; }
  void SetManager(HvTManager* manager) override;
  std::int32_t AddChild(HvTObject* child) override;
  std::int32_t RemoveChild(HvTObject* child) override;
  void SetTarget(HvTObject* object) override;
  virtual void DrawBackground();

  HvColour BackgroundColour() const { return backgroundColour_; }
  void SetBackgroundColour(HvColour colour) { backgroundColour_ = colour; }
  std::uint32_t GroupFlags() const { return groupFlags_; }
  void SetGroupFlags(std::uint32_t flags) { groupFlags_ = flags; }

 private:
  HvColour backgroundColour_;
  std::uint32_t groupFlags_ = kDrawBackground | kGreyBackground | kSolid;
};

}  // namespace vblur
