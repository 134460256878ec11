// The stand-alone host's viewer: a stack of tools that it links to the edited object, sends pen and time to, and
// paints. Belongs to the user-interface thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/hosted/CallTrace.h"
#include "host/viewer/ViewerWindow.h"
#include "platform/ComPtr.h"
#include "platform/PageSite.h"
#include "platform/RefCount.h"
#include "platform/Viewer.h"

namespace vblur::host {

class Viewer final : public IVWViewer {
 public:
  // With one reference. The trace may be null; it must outlive the viewer unless StopTrace is called.
  static ComPtr<Viewer> Make(CallTrace* trace = nullptr) { return ComPtr<Viewer>::Own(new Viewer(trace)); }
  void StopTrace() { trace_ = nullptr; }

  // What a drag of a tool changes is one step of this history; null: nothing is recorded. Borrowed.
  void UseUndo(IDSUndo* undo) { undo_ = undo; }
  // The edited object, with IDSProperties; relinks all tools. Borrowed: set null before it ends.
  void Edit(IUnknown* edited);
  // Unlinks and releases all tools.
  void Clear();

  // Pen events in world units, offered from the top tool down until one takes them. The tool that takes the press gets
  // all events until the release. kFalse if no tool takes it.
  HRESULT PenDown(const tagVWPENEVENT& event);
  HRESULT PenMove(const tagVWPENEVENT& event);
  HRESULT PenUp(const tagVWPENEVENT& event);
  // Notifies the tools. During an interaction the change is deferred to its end.
  void SetTime(double time);
  // Bottom to top.
  void Render(IVWSurface& surface);

  // For a window, and for tests: whether a repaint is needed, cleared by the next Render; whether a tool is being
  // dragged; how many tools there are.
  bool IsInvalid() const { return invalid_ || window_.IsInvalid(); }
  bool IsInteracting() const { return interacting_; }
  std::size_t ToolCount() const { return contexts_.size(); }

  HRESULT QueryInterface(const GUID& iid, void** result) override;
  std::uint32_t AddRef() override;
  std::uint32_t Release() override;

  HRESULT InvalidateLayer(IUnknown* layer, const void* area) override;
  HWND Window() override { return window_.Handle(); }
  double CurrentTime() override { return time_; }
  HRESULT BeginInteraction(const tagVWPENEVENT& event) override;
  HRESULT DoInteraction(const tagVWPENEVENT& event) override;
  HRESULT EndInteraction() override;
  HRESULT PushContext(std::int32_t kind, IUnknown* tool, std::uintptr_t* context) override;
  HRESULT RemoveContext(std::uintptr_t context) override;

 private:
  struct Context {
    std::uintptr_t handle = 0;
    ComPtr<IViewerLayer> layer;
    ComPtr<IViewerEventSink> events;  // empty for a tool without pen events
    ComPtr<IDSTimeNotifySink> times;  // likewise
    bool linkedToOperator = false;
  };
  using PenCall = HRESULT (IViewerEventSink::*)(const tagVWPENEVENT&);

  explicit Viewer(CallTrace* trace) : trace_(trace) {}
  ~Viewer();

  HRESULT Link(Context& context);
  HRESULT LinkToOperator(Context& context);
  void UnlinkFromOperator(Context& context);
  void UnlinkFromViewer(Context& context);
  HRESULT Offer(const char* name, PenCall call, const tagVWPENEVENT& event);
  HRESULT Hand(const Context& context, const char* name, PenCall call, const tagVWPENEVENT& event);
  void TellTime();

  template <typename Call>
  HRESULT Made(const char* object, const std::string& text, Call call) const;

  RefCount references_;
  CallTrace* trace_;
  IDSUndo* undo_ = nullptr;
  IUnknown* edited_ = nullptr;
  std::vector<Context> contexts_;  // the top is last
  std::uintptr_t lastHandle_ = 0;
  std::uintptr_t penOwner_ = 0;  // the tool that took the press; 0 for none
  double time_ = 0.0;
  std::optional<double> waitingTime_;
  bool interacting_ = false;
  bool invalid_ = true;
  ViewerWindow window_;
};

}  // namespace vblur::host
