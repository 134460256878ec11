// The viewer tool: the one object of the overlay that the host's viewer talks to, and the root of the widget
// tree. Turns pen events into messages for the tree, paints the tree on the viewer's surface, and tells the
// property bindings what changed.
//
// Pen events and the surface's rectangle are in world units; the tree's coordinates are frame pixels with the
// origin in the frame's lower left corner.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

#include "overlay/HvT2DAxisGroup.h"
#include "overlay/HvTGroup.h"
#include "overlay/HvTManager.h"
#include "platform/CDSInteractiveTool.h"
#include "platform/ServerCount.h"

namespace vblur {

class HvTDsObject;

class HvTInteract : public CDSInteractiveTool, public HvTManager {
 public:
  enum DisplayFlag : std::uint32_t { kControlsShown = 1 };

  // The count that keeps the server loaded, where there is a server. Set before the first tool is made.
  static inline std::atomic<std::int32_t>* liveObjects = nullptr;

  HvTInteract();

  HRESULT QueryInterface(const GUID& iid, void** result) override;
  HRESULT OnRender(IVWSurface* surface) override;
  HRESULT OnPropertyChanged(const GUID& property, const DSVariant* value, std::uint32_t flags) override;
  HRESULT OnOnTimeChange(double time) override;
  HRESULT OnPenDown(const tagVWPENEVENT& event) override;
  HRESULT OnPenMove(const tagVWPENEVENT& event) override;
  HRESULT OnPenUp(const tagVWPENEVENT& event) override;
  HRESULT OnLinkToOperator(IUnknown* newOperator) override;
  HRESULT OnUnlinkFromOperator() override;
  HRESULT OnLinkToViewer(IVWViewer* newViewer) override;
  HRESULT OnUnlinkFromViewer() override;

  // Keeps a binding informed from now on, and lets it read its properties. Not owned; null is ignored.
  void AddDsObject(HvTDsObject* binding);
  // The binding goes.
  void RemoveDsObject(HvTDsObject* binding);

  // The rectangle of the source, in frame pixels. 0 when it is within 0.01 of the one before.
  std::int32_t SetViewRect(HvPoint origin, HvPoint size);
  bool RectDiffers(HvPoint origin, HvPoint size) const;

  // A property of the linked operator at a time, -1.0 for the viewer's. Nothing while the tool is not linked,
  // and for GUID_NO_PROPERTY.
  std::optional<double> ReadAnimated(const GUID& property, double time);
  // The value of `bound` now, if a change of `changed` may concern it.
  std::optional<double> ReadIfAffected(const GUID& changed, const GUID& bound);
  bool WriteAnimated(const GUID& property, double value);

  // What is run before each paint and each pen event while the pen is up, so that widgets can catch up with what
  // changed on another thread. Empty for nothing; whoever sets it empties it before it goes.
  void BeforeUse(std::function<void()> catchUp) { catchUp_ = std::move(catchUp); }
  // Shows the overlay and lets it hear the pen, or neither; and wants it painted.
  void ShowControls(bool show);
  // Wants the overlay painted.
  void Redraw() { InvalidateLayer(1, nullptr); }

  std::uint32_t displayFlags() const { return displayFlags_; }
  bool linked() const { return linked_ != 0; }
  std::int32_t frameWidth() const { return frameWidth_; }
  std::int32_t frameHeight() const { return frameHeight_; }
  // World units per frame pixel.
  float viewScale() const { return viewScale_; }
  HvPoint viewOrigin() const { return viewOrigin_; }
  HvPoint viewSize() const { return viewSize_; }
  // Where widgets are attached: their origin is the frame's centre, the source's centre, or the frame's lower
  // left corner.
  HvT2DAxisGroup& frameCentre() { return frameCentre_; }
  HvT2DAxisGroup& srcCentre() { return srcCentre_; }
  HvTGroup& viewZero() { return viewZero_; }

 private:
  // With its last reference.
  ~HvTInteract() override;

  void AddTransformNode(HvT2DAxisGroup& node);
  void CatchUp();
  bool TakesPen(const tagVWPENEVENT& event) const;
  void PostPen(std::uint32_t id, const tagVWPENEVENT& event);
  void Paint(IVWSurface& surface);
  void SetUpSurface(const tagVWOPENGLSURFACE& info);

  std::int32_t frameWidth_ = 0;
  std::int32_t frameHeight_ = 0;
  float viewScale_ = 1.0f;
  std::int32_t linked_ = 0;
  std::uint32_t displayFlags_ = kControlsShown;
  std::uint32_t fontBase_ = 0;
  HvT2DAxisGroup frameCentre_;
  HvT2DAxisGroup srcCentre_;
  HvTGroup viewZero_;
  // The groups leave the tree before they end, also when the constructor fails.
  struct LeaveTree {
    HvTManager& tree;
    ~LeaveTree() { tree.ClearChildren(); }
  } leaveTree_{*this};
  HvPoint viewOrigin_;
  HvPoint viewSize_;
  const ServerCount heldServerCount_{liveObjects};
  HvList<HvTDsObject*> dsObjects_;
  std::function<void()> catchUp_;
};

}  // namespace vblur
