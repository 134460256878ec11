// Root of the widget tree: converts pen messages to hover, press, drag and release of the picked widget, and paints
// the tree. User-interface thread only.
#pragma once

#include "overlay/HvMessageLink.h"
#include "overlay/HvTContainer.h"
#include "overlay/HvTDraw.h"

namespace vblur {

class HvTManager : public HvMessageHandler, public HvTContainer, public HvTDraw {
 public:
  HvTManager() = default;
  ~HvTManager() override;

  // Pen moved, down and up, positions in frame pixels. Ignores other messages and the sender.
  void HandleMessage(const HvMessage& message, HvMessageSender* sender) override;
  virtual HvPoint GetPenPos() { return penPos_; }
  // Change of position by the last message; 0, 0 before the first.
  virtual HvPoint GetPenDelta() { return penDelta_; }
  virtual bool IsPenDown() { return penDown_; }
  // Paints the tree; the current OpenGL matrix maps from frame pixels.
  virtual void Draw();

  // Adds a top-level object, without a parent. Returns 0 for null or an object that is already listed.
  std::int32_t AddObject(HvTObject* object);
  // Handles the message; returns whether a repaint is wanted.
  bool PostMessage(const HvMessage& message);

  bool WantsRepaint() const { return repaint_; }
  void WantRepaint() { repaint_ = true; }
  bool IsPicking() const { return picking_; }
  // The widget under the pen; null for none.
  HvTObject* Hover() const { return hover_; }
  // Used when nothing is hit; may be null. Not owned.
  HvTObject* Fallback() const { return fallback_; }
  void SetFallback(HvTObject* object) { fallback_ = object; }
  // Pick distance per axis, in frame pixels.
  HvPoint Tolerance() const { return tolerance_; }
  void SetTolerance(HvPoint tolerance) { tolerance_ = tolerance; }
  bool TipsEnabled() const { return tipsEnabled_; }
  void EnableTips(bool enable) { tipsEnabled_ = enable; }

  // Drops all pointers to a widget that is removed.
  void Forget(const HvTObject& object);

 private:
  void TakePosition(const HvMessage& message);
  void Rescan();
  void PickFallback();
  void HoverAtPen();
  void DragAtPen();
  void PressAtPen();
  void ReleaseAtPen();
  void EnterAtPen();

  HvTObject* hover_ = nullptr;
  HvTObject* fallback_ = nullptr;
  HvPoint penPos_;
  HvPoint penDelta_;
  HvPoint tolerance_{3.0f, 3.0f};
  bool penDown_ = false;
  bool repaint_ = false;
  bool handling_ = false;
  bool picking_ = false;
  bool tipsEnabled_ = true;
};

}  // namespace vblur
