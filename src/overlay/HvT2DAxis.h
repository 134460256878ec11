// The general manipulator: arrows translate, a box scales, an arc rotates, a dot changes the aspect. The handle mask
// selects any subset. Dragging changes only the control's own fields; listeners get messages 200, 201 and 202 with the
// active handle.
//
// Coordinates. `centre` and all points passed in are in the parent's space. The control's own space, that of a group's
// children, is scaled, rotated, then translated to the centre. Handles have fixed sizes in the parent's units, times
// the handle scale, and positions relative to the centre.
#pragma once

#include "overlay/HvMessageLink.h"
#include "overlay/HvTObject.h"
#include "overlay/Matrix3.h"

namespace vblur {

class HvT2DAxis : public HvTObject, public HvMessageSender {
 public:
  // Bits of the handle mask and of the active handle.
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
    kAsIfAll = 32,        // SetCentre, box and children behave as with the mask 63
  };
  // The negative side of the box was grabbed.
  enum FlipFlag : std::uint32_t { kFlipX = 8, kFlipY = 16 };

  // The name may be null. `handleMask` is of Handle bits.
  HvT2DAxis(const char* name, std::uint32_t handleMask);
  // Detaches from parent and manager.
  ~HvT2DAxis() override;

  // The first hit of: aspect, centre, arc, corners, vertical edges, horizontal edges, y arrow, x arrow. Arrows do not
  // rotate with the control.
  HvPick Pick(HvPoint pos, HvPoint tolerance) override;
  void Draw() override;
  // Returns 1 and sends 201 even without an active handle.
  std::int32_t Drag(HvPoint pos) override;
  // Returns 0 without an active handle.
  std::int32_t Press(HvPoint pos) override;
  std::int32_t Release() override;
  std::int32_t Leave() override;
  // "Rotates the TIP." and the like. Draws nothing for a combination of handles without a verb.
  void DrawTip(HvPoint pos) override;
  HvPoint ToLocal(HvPoint pos) override;
  void SetHandleScale(float scale) override;
  // Bounds of all handles, in the parent's space; a point without handles.
  virtual void ComputeBox(HvBox& box);

  // Ignored unless the mask has both translations.
  void SetCentre(float x, float y);
  // Sets origin and size from ComputeBox and calls ChildChanged on the parent.
  void UpdateBox();
  // Makes the control the leaf of the pick; marks it dirty if anything changes.
  void SetActiveHandle(std::uint32_t handle);
  // Position of the aspect handle relative to the centre, unrotated.
  HvPoint AspectHandlePos() const;

  std::uint32_t HandleMask() const { return handleMask_; }
  // The handle under the pen, or the one that is being dragged; 0 for none.
  std::uint32_t Active() const { return active_; }
  std::uint32_t FlipFlags() const { return flipFlags_; }
  std::uint32_t AxisFlags() const { return axisFlags_; }
  void SetAxisFlags(std::uint32_t flags);
  HvPoint Centre() const { return centre_; }
  // Per axis. May be negative; 0 makes the inverse the identity.
  HvPoint AxisScale() const { return {scaleX_, scaleY_}; }
  void SetAxisScale(float x, float y);
  float Scale() const { return scale_; }
  void SetScale(float scale);
  // Degrees, anticlockwise, not limited to 360.
  float Rotation() const { return rotation_; }
  void SetRotation(float degrees);
  // -1 to 1: negative values shrink x, positive ones y.
  float Aspect() const { return aspect_; }
  void SetAspect(float aspect);
  // Factors of the aspect per axis, 0 to 1.
  float XAspect() const;
  float YAspect() const;

 protected:
  // The mask for SetCentre, ComputeBox and the transform of a group.
  std::uint32_t EffectiveMask() const { return (axisFlags_ & kAsIfAll) != 0 ? 63u : handleMask_; }
  // scale * axis scale * aspect, per axis.
  HvPoint FullScale() const { return {scale_ * scaleX_ * XAspect(), scale_ * scaleY_ * YAspect()}; }
  // Own to parent space and back; valid after UpdateMatrices.
  const Matrix3& Forward() const { return forward_; }
  const Matrix3& Inverse() const { return inverse_; }
  void UpdateMatrices();
  // Multiplies the current OpenGL matrix by the top of the overlay's stack.
  static void MultiplyByStackTop();

 private:
  // A pen position relative to the handles.
  struct Probe {
    HvPoint tolerance;
    HvPoint offset;     // from the centre
    HvPoint unrotated;  // the same, in unrotated axes
    HvPoint scale;      // FullScale()
    HvPoint unit;       // `unrotated` over the full scale
    HvPoint unitTolerance;
  };
  Probe ProbeAt(HvPoint pos, HvPoint tolerance) const;
  std::uint32_t HandleAt(const Probe& probe) const;
  std::uint32_t ScaleHandleAt(const Probe& probe) const;
  std::uint32_t ArrowAt(const Probe& probe) const;
  void SetFlips(std::uint32_t handle, const Probe& probe);

  void DragTranslate(HvPoint pos);
  // `offset` is the pen's offset from the centre, `unrotated` the same without the rotation at the press.
  void DragRotate(HvPoint offset);
  void DragScale(HvPoint unrotated);
  void DragAspect(HvPoint unrotated);
  // Sets origin and size and calls ChildChanged on the parent.
  void TakeBox(const HvBox& area);
  // Invalidates the matrices and updates the box.
  void Restate();

  bool Offers(std::uint32_t handles) const { return (handleMask_ & handles) != 0; }
  bool IsActive(std::uint32_t handles) const { return (active_ & handles) != 0; }
  float AxisLength() const { return 37.0f * HandleScale(); }
  float ArcRadius() const { return 32.0f * HandleScale(); }
  // The upper right corner of the scale box, relative to the centre, unrotated.
  HvPoint BoxCorner() const;

  void DrawRotatedHandles() const;
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
