// The viewer tool: the one object of the overlay that the host's viewer talks to, and the root of the widget
// tree. Converts pen events to messages for the tree, paints the tree on the viewer's surface, and notifies the
// property bindings of changes.
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

  // The server's count of live objects; null without a server. Set before the first tool is created.
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

  // Registers a binding for changes of properties and time, and refreshes it. Not owned; null is ignored.
  void AddDsObject(HvTDsObject* binding);
  void RemoveDsObject(HvTDsObject* binding);

  // The source's rectangle, in frame pixels. Returns 0 and stores nothing if it is within 0.01 of the current one.
  std::int32_t SetViewRect(HvPoint origin, HvPoint size);
  bool RectDiffers(HvPoint origin, HvPoint size) const;

  // A property of the linked operator at a time; -1.0 means the viewer's. Empty while the tool is not linked, and
  // for GUID_NO_PROPERTY.
  std::optional<double> ReadAnimated(const GUID& property, double time);
  // The current value of `bound`, if it is `changed` or `changed` is GUID_ALL_PROPERTIES.
  std::optional<double> ReadIfAffected(const GUID& changed, const GUID& bound);
  bool WriteAnimated(const GUID& property, double value);

  // Called before each paint and pen event while the pen is up, to apply changes from other threads. May be empty;
  // must be reset before what it captures ends.
  void BeforeUse(std::function<void()> catchUp) { catchUp_ = std::move(catchUp); }
  // Whether the overlay is painted and takes pen events; invalidates it.
  void ShowControls(bool show);
  // Invalidates the overlay.
  void Redraw() { InvalidateLayer(1, nullptr); }

  // For tests and tracing: what the tool knows of its view.
  std::uint32_t DisplayFlags() const { return displayFlags_; }
  bool Linked() const { return linked_ != 0; }
  std::int32_t FrameWidth() const { return frameWidth_; }
  std::int32_t FrameHeight() const { return frameHeight_; }
  // World units per frame pixel.
  float ViewScale() const { return viewScale_; }
  HvPoint ViewOrigin() const { return viewOrigin_; }
  HvPoint ViewSize() const { return viewSize_; }
  // Parents for widgets. Their origins: the frame's centre, the source's centre, and the frame's lower left corner.
  HvT2DAxisGroup& FrameCentre() { return frameCentre_; }
  HvT2DAxisGroup& SrcCentre() { return srcCentre_; }
  HvTGroup& ViewZero() { return viewZero_; }

 private:
  // Through Release.
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
  // Detaches the groups before they are destroyed, also when the constructor throws.
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
