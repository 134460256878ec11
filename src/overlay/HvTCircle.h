// A ring about the origin of its parent whose radius follows the pen: an ellipse that is no larger than its
// radius on either axis.
#pragma once

#include "overlay/HvMessageLink.h"
#include "overlay/HvTObject.h"

namespace vblur {

// Sends 200 when it is grabbed, 201 with the new radius with each change, 202 when it is let go. An aspect of
// 0 or infinity flattens it to a line, which is drawn and cannot be grabbed or dragged.
class HvTCircle : public HvTObject, public HvMessageSender {
 public:
  HvTCircle(const char* name, float radius);

  // On the ring within the tolerance of x, measured as if it were round; the tolerance of y plays no part.
  HvPick Pick(HvPoint pos, HvPoint tolerance) override;
  void Draw() override;
  // The ring runs through the pen from the first move on, wherever it was grabbed.
  std::int32_t Drag(HvPoint pos) override;
  std::int32_t Press(HvPoint pos) override;
  std::int32_t Release() override;

  // In the parent's units.
  float radius() const { return radius_; }
  // Width over height, from 0 to infinity.
  float aspect() const { return aspect_; }
  // True if it differs from the one before; nobody is sent a message.
  bool SetRadius(float radius);
  bool SetAspect(float aspect);

 private:
  float scaleX() const { return aspect_ <= 1.0f ? aspect_ : 1.0f; }
  float scaleY() const { return aspect_ < 1.0f ? 1.0f : 1.0f / aspect_; }
  bool isFlat() const { return scaleX() == 0.0f || scaleY() == 0.0f; }
  // The radius of the ring through a point. The ring is not flat.
  double RadiusAt(HvPoint pos) const;
  void UpdateBox();

  float radius_;
  float aspect_ = 1.0f;
};

}  // namespace vblur
