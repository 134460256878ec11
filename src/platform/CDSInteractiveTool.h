// The host's base class of viewer tools: a layer that paints, takes pen events, and reads and writes the properties of
// the operator that it is linked to. Implemented by sdk/viewer.
#pragma once

#include <memory>

#include "CDSCOMObject.h"
#include "IDSProperties.h"
#include "Viewer.h"

namespace vblur {

// A client of the host's command map; tools have no commands by default.
class CDSBaseCmdMapClient2 {};

class CDSInteractiveTool : public IViewerLayer,
                           public IViewerEventSink,
                           public IDSPropertyNotifySink,
                           public IDSTimeNotifySink,
                           public CDSBaseCmdMapClient2,
                           public CDSCOMObject {
 public:
  HRESULT QueryInterface(const GUID& iid, void** result) override;
  std::uint32_t AddRef() override { return AddReference(); }
  std::uint32_t Release() override { return DropReference(); }

  HRESULT OnRender(IVWSurface* surface) override;
  // From then on OnPropertyChanged reports the operator's changes. kNullPointer without an
  // operator, kNoInterface for one that has no properties; a tool is linked to one at a time.
  HRESULT OnLinkToOperator(IUnknown* newOperator) override;
  HRESULT OnUnlinkFromOperator() override;
  HRESULT OnLinkToViewer(IVWViewer* newViewer) override;
  HRESULT OnUnlinkFromViewer() override;
  // Events that a tool does not take: kFalse.
  HRESULT OnPenDown(const tagVWPENEVENT& event) override;
  HRESULT OnPenMove(const tagVWPENEVENT& event) override;
  HRESULT OnPenUp(const tagVWPENEVENT& event) override;
  HRESULT OnPropertyChanged(const GUID& property, const DSVariant* value, std::uint32_t flags) override;
  HRESULT OnOnTimeChange(double time) override;

 protected:
  CDSInteractiveTool();
  ~CDSInteractiveTool() override;

  // Tell the viewer what the pen does with the tool; kOk without a viewer as well.
  HRESULT OnBeginInteraction(const tagVWPENEVENT& event);
  HRESULT OnDoInteraction(const tagVWPENEVENT& event);
  HRESULT TerminateInteraction();
  // Requests a repaint of the layer; `area` null for all of it.
  HRESULT InvalidateLayer(std::int32_t layer, const void* area);
  // Null without a viewer.
  HWND GetViewerWindow() const;
  // A property of the operator at a time, as a 64-bit float; -1.0 is the viewer's time. kFailed without an
  // operator. `reserved` is null.
  HRESULT GetAnimatedProperty(const GUID& property, DSVariant* value, IUnknown* reserved, double time);
  // A property with a curve gets a key at the time, one without its plain value.
  HRESULT SetAnimatedProperty(const GUID& property, const DSVariant& value, IUnknown* reserved, double time,
                              std::uint32_t flags);

  bool HasOperator() const { return operator_ != nullptr; }
  bool HasViewer() const { return viewer_ != nullptr; }

 private:
  class Listener;

  double TimeOf(double time) const;

  IDSProperties* operator_ = nullptr;
  IVWViewer* viewer_ = nullptr;
  std::unique_ptr<Listener> listener_;
};

}  // namespace vblur
