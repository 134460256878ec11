// The overlay's general manipulator: arrows that move, a box that scales, an arc that rotates and a dot for the
// aspect, of which a caller asks for any subset. It changes its own fields alone; who listens hears messages
// when the pen takes hold, moves and lets go, each with the active handle.
//
// Coordinates. `centre` and all points that come in are in the parent's space. The control's own space, that of
// a group's children, is scaled, then turned, then moved to the centre. Handles have fixed sizes in the
// parent's units, times the handle scale, and lie about the centre.
#pragma once

#include "overlay/HvMessageLink.h"
#include "overlay/HvTObject.h"
#include "overlay/Matrix3.h"

namespace vblur {

class HvT2DAxis : public HvTObject, public HvMessageSender {
 public:
  // Which handles there are, and which one is active.
  enum Handle : std::uint32_t {
    kTranslateX = 1,
    kTranslateY = 2,
    kTranslate = kTranslateX | kTranslateY,  // the centre
    kScale = 4,                              // corners of the box
    kScaleX = 8,                             // its vertical edges
    kScaleY = 16,                            // its horizontal edges
    kRotate = 32,
    kAspect = 64,
    kAnyScale = kScale | kScaleX | kScaleY,
  };
  enum AxisFlag : std::uint32_t {
    kMatricesStale = 1,
    kDrawName = 2,
    kNoTranslation = 16,  // translation handles are not drawn, and nothing is picked
    kAsIfAll = 32,        // box and centre are those of a control with every handle but the aspect
  };
  // On which side of the centre the box was taken.
  enum FlipFlag : std::uint32_t { kFlipX = 8, kFlipY = 16 };

  // The name may be null. `handleMask` is of Handle bits.
  HvT2DAxis(const char* name, std::uint32_t handleMask);
  // Leaves its parent or its manager.
  ~HvT2DAxis() override;

  // Handles that lie over each other: the aspect first, then centre, arc, corners, edges and arrows. Arrows do
  // not turn with the control.
  HvPick Pick(HvPoint pos, HvPoint tolerance) override;
  void Draw() override;
  // 1, whether or not a handle is active: listeners are told in any case.
  std::int32_t Drag(HvPoint pos) override;
  // 0 without an active handle.
  std::int32_t Press(HvPoint pos) override;
  std::int32_t Release() override;
  std::int32_t Leave() override;
  // "Rotates the ...", with the tip for the subject. Nothing for an active handle that has no such words.
  void DrawTip(HvPoint pos) override;
  HvPoint ToLocal(HvPoint pos) override;
  void SetHandleScale(float scale) override;
  // The box of all handles, in the parent's space; a point when there are none.
  virtual void ComputeBox(HvBox& box);

  // In the parent's space. Nothing for a control that cannot be moved both ways.
  void SetCentre(float x, float y);
  // Origin and size from ComputeBox; the parent is told.
  void UpdateBox();
  // The control becomes the leaf of the pick; the overlay is painted again where that is news.
  void SetActiveHandle(std::uint32_t handle);
  // The dot of the aspect, about the centre, before the rotation.
  HvPoint AspectHandlePos() const;

  std::uint32_t handleMask() const { return handleMask_; }
  // The handle under the pen, or the one that is being dragged; 0 for none.
  std::uint32_t active() const { return active_; }
  std::uint32_t flipFlags() const { return flipFlags_; }
  std::uint32_t axisFlags() const { return axisFlags_; }
  void SetAxisFlags(std::uint32_t flags);
  HvPoint centre() const { return centre_; }
  // Per axis, and over all. May be negative; with 0 the own space is the parent's.
  HvPoint axisScale() const { return {scaleX_, scaleY_}; }
  void SetAxisScale(float x, float y);
  float scale() const { return scale_; }
  void SetScale(float scale);
  // Degrees, anticlockwise, without a limit.
  float rotation() const { return rotation_; }
  void SetRotation(float degrees);
  // From -1 to 1: below 0 the x axis is thinner by so much, above 0 the y axis.
  float aspect() const { return aspect_; }
  void SetAspect(float aspect);
  // What is left of each axis by the aspect, 0 to 1.
  float xAspect() const;
  float yAspect() const;

 protected:
  // The mask that box and group go by.
  std::uint32_t effectiveMask() const { return (axisFlags_ & kAsIfAll) != 0 ? 63u : handleMask_; }
  // scale * axis scale * aspect, per axis.
  HvPoint fullScale() const { return {scale_ * scaleX_ * xAspect(), scale_ * scaleY_ * yAspect()}; }
  // From own to parent space and back; right after UpdateMatrices.
  const Matrix3& forward() const { return forward_; }
  const Matrix3& inverse() const { return inverse_; }
  void UpdateMatrices();
  // The current OpenGL matrix, times the top of the overlay's stack.
  static void MultiplyByStackTop();

 private:
  // Where the pen stands to the handles.
  struct Probe {
    HvPoint tolerance;
    HvPoint offset;  // from the centre
    HvPoint turned;  // the same, turned back by the rotation
    HvPoint scale;   // fullScale()
    HvPoint unit;    // `turned` in the box's own units
    HvPoint unitTolerance;
  };
  Probe ProbeAt(HvPoint pos, HvPoint tolerance) const;
  std::uint32_t HandleAt(const Probe& probe) const;
  std::uint32_t ScaleHandleAt(const Probe& probe) const;
  std::uint32_t ArrowAt(const Probe& probe) const;
  void SetFlips(std::uint32_t handle, const Probe& probe);

  void DragTranslate(HvPoint pos);
  // `offset` and `turned` are the pen's offset from the centre, the latter turned back by the rotation that
  // stood at the press.
  void DragRotate(HvPoint offset);
  void DragScale(HvPoint turned);
  void DragAspect(HvPoint turned);
  // Origin and size from a box; the parent is told.
  void TakeBox(const HvBox& area);
  // After a field that the matrices depend on.
  void Restate();

  bool offers(std::uint32_t handles) const { return (handleMask_ & handles) != 0; }
  bool isActive(std::uint32_t handles) const { return (active_ & handles) != 0; }
  float axisLength() const { return 37.0f * handleScale(); }
  float arcRadius() const { return 32.0f * handleScale(); }
  // The upper right corner of the scale box, about the centre, before the rotation.
  HvPoint BoxCorner() const;

  void DrawTurnedHandles() const;
  void DrawAspectGuide() const;
  void DrawScaleBox() const;
  void DrawAspectHandle() const;
  void DrawRotateHandle() const;
  void DrawCentreDot() const;
  void DrawArrows(Handle handle) const;
  void DrawName() const;

  HvPoint lastPos_;
  float lastAngle_ = 0.0f;  // radians
  float pressSin_ = 0.0f;
  float pressCos_ = 1.0f;
  std::uint32_t handleMask_;
  std::uint32_t active_ = 0;
  std::uint32_t flipFlags_ = 0;
  HvPoint centre_;
  float scaleX_ = 1.0f;
  float scaleY_ = 1.0f;
  float scale_ = 1.0f;
  float rotation_ = 0.0f;
  float aspect_ = 0.0f;
  Matrix3 forward_;
  Matrix3 inverse_;
  std::uint32_t axisFlags_ = kMatricesStale;
};

}  // namespace vblur
