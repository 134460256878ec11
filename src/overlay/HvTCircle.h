// A ring about the parent's origin whose radius is dragged. With an aspect it is an ellipse, never larger than the
// radius on either axis.
#pragma once

#include "overlay/HvMessageLink.h"
#include "overlay/HvTObject.h"

namespace vblur {

// Sends 200 on press, 201 with the new radius on each change, 202 on release. An aspect of 0 or infinity flattens the
// ring to a line, which is drawn but never hit or dragged.
class HvTCircle : public HvTObject, public HvMessageSender {
 public:
  HvTCircle(const char* name, float radius);

  // A hit is within the x tolerance of the ring, measured in the space where it is round.
  HvPick Pick(HvPoint pos, HvPoint tolerance) override;
  void Draw() override;
  // The ring passes through the pen, without an offset from where it was grabbed.
  std::int32_t Drag(HvPoint pos) override;
  std::int32_t Press(HvPoint pos) override;
  std::int32_t Release() override;

  // In the parent's units.
  float Radius() const { return radius_; }
  // Width over height, from 0 to infinity.
  float Aspect() const { return aspect_; }
  // True if the value changed. Sends no message.
  bool SetRadius(float radius);
  bool SetAspect(float aspect);

 private:
  float ScaleX() const { return aspect_ <= 1.0f ? aspect_ : 1.0f; }
  float ScaleY() const { return aspect_ < 1.0f ? 1.0f : 1.0f / aspect_; }
  bool IsFlat() const { return ScaleX() == 0.0f || ScaleY() == 0.0f; }
  // The radius of the ring through a point. Not for a flat ring.
  double RadiusAt(HvPoint pos) const;
  void UpdateBox();

  float radius_;
  float aspect_ = 1.0f;
};

}  // namespace vblur
