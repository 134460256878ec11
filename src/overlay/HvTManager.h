// The root of the overlay: turns pen messages into hover, press, drag and release of the widget that was
// picked, and paints all of them. Runs on the user-interface thread.
#pragma once

#include "overlay/HvMessageLink.h"
#include "overlay/HvTContainer.h"
#include "overlay/HvTDraw.h"

namespace vblur {

class HvTManager : public HvMessageHandler, public HvTContainer, public HvTDraw {
 public:
  HvTManager() = default;
  ~HvTManager() override;

  // Pen moved, down and up; positions are frame pixels. Everything else is ignored, and so is the sender.
  void HandleMessage(const HvMessage& message, HvMessageSender* sender) override;
  virtual HvPoint GetPenPos() { return penPos_; }
  // What the last message changed; 0, 0 before the first.
  virtual HvPoint GetPenDelta() { return penDelta_; }
  virtual bool IsPenDown() { return penDown_; }
  // Paints everything with the current OpenGL matrix leading from frame pixels.
  virtual void Draw();

  // At the top of the tree: a parent of it is forgotten. 0 for null and for one that is listed.
  std::int32_t AddObject(HvTObject* object);
  // Handles it; whether the overlay wants to be painted.
  bool PostMessage(const HvMessage& message);

  bool wantsRepaint() const { return repaint_; }
  void WantRepaint() { repaint_ = true; }
  bool isPicking() const { return picking_; }
  // What the pen is over; null for nothing.
  HvTObject* hover() const { return hover_; }
  // What stands for everything that is not hit; null for nothing. Not owned.
  HvTObject* fallback() const { return fallback_; }
  void SetFallback(HvTObject* object) { fallback_ = object; }
  // How far from a handle the pen may be, in frame pixels.
  HvPoint tolerance() const { return tolerance_; }
  void SetTolerance(HvPoint tolerance) { tolerance_ = tolerance; }
  bool tipsEnabled() const { return tipsEnabled_; }
  void EnableTips(bool enable) { tipsEnabled_ = enable; }

  // No pointer to a widget that leaves stays behind here.
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
