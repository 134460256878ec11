// Base of all widgets of the overlay. The widget classes are a general set; the effect does not use tool tips,
// the fallback, the second container and the handles of the axis control.
//
// Coordinates. A widget's origin, and the points passed to Pick, Press, Drag and Enter, are in its parent's space; for
// top-level widgets that is frame pixels, y upwards. ToLocal and PushTransform convert to the widget's own space, the
// parent space of its children.
#pragma once

#include <cstdint>
#include <memory>

#include "overlay/HvGeometry.h"
#include "overlay/HvTDraw.h"

namespace vblur {

class HvTManager;
class HvTObject;

// Result of a pick: a miss, an object, or "swallowed": the empty space of a solid group ends the search with nothing to
// act on.
class HvPick {
 public:
  HvPick() = default;
  HvPick(HvTObject* object) : object_(object) {}
  static HvPick Swallowed() {
    HvPick pick;
    pick.swallowed_ = true;
    return pick;
  }

  // Null for a miss and for a swallowed pick.
  HvTObject* Object() const { return object_; }
  bool IsSwallowed() const { return swallowed_; }
  bool EndsSearch() const { return swallowed_ || object_ != nullptr; }

  friend bool operator==(const HvPick&, const HvPick&) = default;

 private:
  HvTObject* object_ = nullptr;
  bool swallowed_ = false;
};

// Operations that return a whole number return non-zero if something changed.
class HvTObject : public HvTDraw {
 public:
  enum State : std::uint32_t { kPickable = 1, kVisible = 2 };
  enum Flag : std::uint32_t {
    kHasBox = 1,  // the box takes part in culling
    kOriginSettable = 2,
    kSizeSettable = 4,
    kPressed = 8,
    kHover = 16,
  };

  explicit HvTObject(const char* name);
  HvTObject(const HvTObject&) = delete;
  HvTObject& operator=(const HvTObject&) = delete;

  // Hit test. A hit sets the targets from here down to the leaf. The tolerance is a distance per axis in the same
  // space.
  virtual HvPick Pick(HvPoint pos, HvPoint tolerance) = 0;
  // Paints; the current OpenGL matrix maps from the parent's space.
  virtual void Draw() = 0;
  virtual std::int32_t Drag(HvPoint pos) = 0;
  // Called around operations on children; groups update the overlay's matrix stack.
  virtual void PushTransform() {}
  virtual void PopTransform() {}
  virtual std::int32_t Press(HvPoint pos);
  virtual std::int32_t Release();
  virtual std::int32_t Enter(HvPoint pos);
  virtual std::int32_t Leave();
  // Paints the tool tip; `pos` is its lower left corner in frame pixels.
  virtual void DrawTip(HvPoint pos);
  // A child's box changed.
  virtual void ChildChanged(HvTObject* child);
  // From the parent's space to the widget's own.
  virtual HvPoint ToLocal(HvPoint pos);
  virtual ~HvTObject();
  // Ignored unless settable. Call ChildChanged on the parent.
  virtual void SetSize(HvPoint size);
  virtual void SetOrigin(HvPoint pos);
  virtual void SetManager(HvTManager* manager);
  virtual void SetHandleScale(float scale) { handleScale_ = scale; }
  virtual HvPoint MinSize() { return {0.0f, 0.0f}; }
  virtual HvPoint MaxSize() { return {kHvLargest, kHvLargest}; }
  // This widget if the names are equal, else null.
  virtual HvTObject* FindByName(const char* name);
  virtual std::int32_t AddChild(HvTObject* child);
  virtual std::int32_t RemoveChild(HvTObject* child);
  // The next object towards the picked leaf; null means this one, the leaf.
  virtual void SetTarget(HvTObject* object);

  // Attaches this widget to a group, which does not own it. Null clears parent and manager but not the parent's list.
  // Attach with this: AddChild alone leaves the parent unset.
  void SetParent(HvTObject* parent);
  // Also removes the widget from the list of its parent or manager. A widget destroyed before them must call it.
  void Detach();
  // Replaces the state word: pickable, visible.
  void SetVisibility(std::uint32_t state) { state_ = state; }
  // Requests a repaint from the manager.
  void MarkDirty();

  const char* Name() const { return name_.get(); }
  const char* Tip() const { return tip_.get(); }
  // Copied; null for none. The axis control uses it as the %s of "Translates the %s." and the like.
  void SetTip(const char* tip);
  HvTManager* Manager() const { return manager_; }
  HvTObject* Parent() const { return parent_; }
  HvTObject* Target() const { return target_; }
  // Not picked.
  void ClearTarget() { target_ = nullptr; }
  HvColour Colour() const { return colour_; }
  void SetColour(HvColour colour) { colour_ = colour; }
  HvPoint Origin() const { return origin_; }
  HvPoint Size() const { return size_; }
  HvBox Box() const { return BoxOf(origin_, size_); }
  std::uint32_t State() const { return state_; }
  bool IsVisible() const { return (state_ & kVisible) != 0; }
  bool IsPickable() const { return (state_ & kPickable) != 0; }
  float HandleScale() const { return handleScale_; }
  bool UsesStackMatrix() const { return useStackMatrix_; }
  void UseStackMatrix(bool use) { useStackMatrix_ = use; }
  bool HasBox() const { return HasFlag(kHasBox); }
  bool IsPressed() const { return HasFlag(kPressed); }
  bool IsHovered() const { return HasFlag(kHover); }
  std::uint32_t Flags() const { return flags_; }

 protected:
  bool HasFlag(Flag flag) const { return (flags_ & flag) != 0; }
  void PutFlag(Flag flag, bool on) { flags_ = on ? flags_ | flag : flags_ & ~static_cast<std::uint32_t>(flag); }
  // Sets the box whether settable or not, and calls ChildChanged on the parent.
  void PutBox(HvPoint origin, HvPoint size);
  // The same without ChildChanged.
  void StoreBox(HvPoint origin, HvPoint size) {
    origin_ = origin;
    size_ = size;
  }

 private:
  std::unique_ptr<char[]> name_;
  std::unique_ptr<char[]> tip_;
  HvTManager* manager_ = nullptr;
  HvTObject* parent_ = nullptr;
  HvTObject* target_ = nullptr;
  HvColour colour_;
  HvPoint origin_;
  HvPoint size_;
  std::uint32_t state_ = kPickable | kVisible;
  float handleScale_ = 1.0f;
  bool useStackMatrix_ = false;
  std::uint32_t flags_ = kHasBox | kOriginSettable | kSizeSettable;
};

}  // namespace vblur
