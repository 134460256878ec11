// The stand-alone host's viewer: keeps the tools that are pushed on it, links them to what is edited, hands them
// the pen and the time, and has them paint. Belongs to the user-interface thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/hosted/CallTrace.h"
#include "platform/ComPtr.h"
#include "platform/Viewer.h"

namespace vblur::host {

class Viewer final : public IVWViewer, public IVWWindow {
 public:
  // With one reference. The trace is borrowed: it must outlive the viewer, or StopTrace be called; null for none.
  static ComPtr<Viewer> Make(CallTrace* trace = nullptr) { return ComPtr<Viewer>::Own(new Viewer(trace)); }
  void StopTrace() { trace_ = nullptr; }

  // What is edited: an object with IDSProperties. Tools that are there are linked to it anew. Borrowed: null
  // before it goes.
  void Edit(IUnknown* edited);
  // Unlinks every tool and lets it go.
  void Clear();

  // The pen, in world units. From the tool on top down to the one that takes the event; who takes the press has
  // the pen to itself until it is lifted. kFalse when nobody takes it.
  HRESULT PenDown(const tagVWPENEVENT& event);
  HRESULT PenMove(const tagVWPENEVENT& event);
  HRESULT PenUp(const tagVWPENEVENT& event);
  // Tells the tools. While one of them is being dragged the time waits for the end of the drag.
  void SetTime(double time);
  // From the lowest tool to the one on top.
  void Render(IVWSurface& surface);

  // Whether something in the picture is no longer right; cleared by the next Render.
  bool isInvalid() const { return invalid_; }
  bool isInteracting() const { return interacting_; }
  std::size_t toolCount() const { return contexts_.size(); }

  HRESULT QueryInterface(const GUID& iid, void** result) override;
  std::uint32_t AddRef() override;
  std::uint32_t Release() override;

  HRESULT InvalidateLayer(IUnknown* layer, const void* area) override;
  HWND Window() override { return this; }
  double CurrentTime() override { return time_; }
  HRESULT BeginInteraction(const tagVWPENEVENT& event) override;
  HRESULT DoInteraction(const tagVWPENEVENT& event) override;
  HRESULT EndInteraction() override;
  HRESULT PushContext(std::int32_t kind, IUnknown* tool, std::uintptr_t* context) override;
  HRESULT RemoveContext(std::uintptr_t context) override;
  void Invalidate() override { invalid_ = true; }

 private:
  struct Context {
    std::uintptr_t handle = 0;
    ComPtr<IViewerLayer> layer;
    ComPtr<IViewerEventSink> events;  // empty for a tool that hears no pen
    ComPtr<IDSTimeNotifySink> times;  // likewise
    bool linkedToOperator = false;
  };
  using PenCall = HRESULT (IViewerEventSink::*)(const tagVWPENEVENT&);

  explicit Viewer(CallTrace* trace) : trace_(trace) {}
  ~Viewer() override { Clear(); }

  HRESULT Link(Context& context);
  HRESULT LinkToOperator(Context& context);
  void UnlinkFromOperator(Context& context);
  void UnlinkFromViewer(Context& context);
  HRESULT Offer(const char* name, PenCall call, const tagVWPENEVENT& event);
  HRESULT Hand(const Context& context, const char* name, PenCall call, const tagVWPENEVENT& event);
  void TellTime();

  template <typename Call>
  HRESULT Made(const char* object, const std::string& text, Call call) const;

  std::atomic<std::uint32_t> references_{1};
  CallTrace* trace_;
  IUnknown* edited_ = nullptr;
  std::vector<Context> contexts_;  // the last one is on top
  std::uintptr_t lastHandle_ = 0;
  std::uintptr_t penOwner_ = 0;  // who took the press; 0 for nobody
  double time_ = 0.0;
  std::optional<double> waitingTime_;
  bool interacting_ = false;
  bool invalid_ = true;
};

}  // namespace vblur::host
