// A rectangle with draggable edges and corners, moved by the bars of a cross at its centre.
#pragma once

#include <cstdint>

#include "overlay/HvMessageLink.h"
#include "overlay/HvTObject.h"

namespace vblur {

struct HvRectangleSides {
  float x0 = 0.0f;  // left
  float y0 = 0.0f;  // bottom
  float x1 = 0.0f;  // right
  float y1 = 0.0f;  // top

  friend bool operator==(const HvRectangleSides&, const HvRectangleSides&) = default;
};

// Sends 200 on press, 201 on each change, 202 on release.
class HvTRectangle : public HvTObject, public HvMessageSender {
 public:
  enum Edge : std::uint32_t {
    kLeft = 1,
    kRight = 2,
    kBottom = 4,
    kTop = 8,
    kHorizontalBar = 16,
    kVerticalBar = 32,
  };

  // From two corners, in the parent's space.
  HvTRectangle(const char* name, float x0, float y0, float x1, float y1);

  // A corner is two edges. Bars are hit only where no edge is.
  HvPick Pick(HvPoint pos, HvPoint tolerance) override;
  void Draw() override;
  // An edge stops at the opposite one. A bar keeps the size. Both stop at the limits if those are enforced.
  std::int32_t Drag(HvPoint pos) override;
  std::int32_t Press(HvPoint pos) override;
  std::int32_t Release() override;
  // Sorts the sides and clamps them to the limits if those are enforced. Origin and size, used for culling, are those
  // of the arguments: the size is negative if they are not sorted.
  virtual void SetBox(float x0, float y0, float x1, float y1);

  float X0() const { return sides_.x0; }
  float Y0() const { return sides_.y0; }
  float X1() const { return sides_.x1; }
  float Y1() const { return sides_.y1; }
  const HvRectangleSides& Sides() const { return sides_; }
  // The edges and bars under the pen, or grabbed by it.
  std::uint32_t EdgeMask() const { return edgeMask_; }
  const HvBox& Limits() const { return limits_; }
  // Both take effect with the next change of the rectangle.
  void SetLimits(float minX, float minY, float maxX, float maxY) { limits_ = {minX, maxX, minY, maxY}; }
  void KeepWithinLimits(bool keep) { keepWithinLimits_ = keep; }
  bool KeepsWithinLimits() const { return keepWithinLimits_; }

 protected:
  void NormaliseBox(float x0, float y0, float x1, float y1);
  // The edges within the tolerance of the pen, if it is within `span` and the tolerance.
  std::uint32_t EdgesAt(HvPoint pos, HvPoint tolerance, const HvBox& span) const;
  // Stores the edges of a pick and returns its result.
  HvPick TakeEdges(std::uint32_t edges);
  bool IsOn(Edge edge) const { return (edgeMask_ & edge) != 0; }

 private:
  std::uint32_t BarsAt(HvPoint pos, HvPoint tolerance) const;
  void DrawCross() const;
  void DrawBar(Edge bar, HvPoint from, HvPoint to) const;
  void DrawEdge(Edge edge, float x0, float y0, float x1, float y1) const;

  HvRectangleSides sides_;
  std::uint32_t edgeMask_ = 0;
  HvPoint pressPos_;
  HvBox limits_{0.0f, 0.0f, 0.0f, 0.0f};
  bool keepWithinLimits_ = false;
};

}  // namespace vblur
