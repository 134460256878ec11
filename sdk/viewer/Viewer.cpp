#include "platform/Viewer.h"

#include <map>

#include "platform/ComPtr.h"
#include "sdk/viewer/EditedObjects.h"
#include "sdk/viewer/PaintDevice.h"

namespace vblur {

namespace {

// A viewer's handle with its viewer, which is kept alive until the context is removed.
struct PushedContext {
  ComPtr<IVWViewer> viewer;
  std::uintptr_t context = 0;
};

std::map<std::uintptr_t, PushedContext>& PushedContexts() {
  static std::map<std::uintptr_t, PushedContext> contexts;
  return contexts;
}

std::uintptr_t NewHandle() {
  static std::uintptr_t last = 0;
  return ++last;
}

}  // namespace

HRESULT vwSurfaceBeginRenderOpenGL(IVWSurface* surface, tagVWOPENGLSURFACE* info) {
  if (surface == nullptr || info == nullptr) return kNullPointer;
  const HRESULT result = surface->BeginRenderOpenGL(*info);
  if (result >= 0) host::CurrentDevice() = {surface, nullptr};
  return result;
}

HRESULT vwSurfaceEndRenderOpenGL(IVWSurface* surface, const tagVWOPENGLSURFACE* info) {
  if (surface == nullptr || info == nullptr) return kNullPointer;
  host::CurrentDevice() = {};
  return surface->EndRenderOpenGL(*info);
}

HRESULT VWControllerPushContext(std::int32_t kind, IUnknown* tool, IUnknown* viewer, bool, bool, double,
                                std::uintptr_t* context) {
  if (tool == nullptr || viewer == nullptr || context == nullptr) return kNullPointer;
  *context = 0;
  PushedContext pushed;
  if (viewer->QueryInterface(IVWViewer::kIid, pushed.viewer.Receive()) != kOk) {
    pushed.viewer = ComPtr<IVWViewer>(host::ViewerOf(viewer));
  }
  if (!pushed.viewer) return kNoInterface;
  const HRESULT result = pushed.viewer->PushContext(kind, tool, &pushed.context);
  if (result < 0) return result;
  *context = NewHandle();
  PushedContexts().emplace(*context, pushed);
  return result;
}

HRESULT VWControllerRemoveContext(std::uintptr_t context) {
  const auto found = PushedContexts().find(context);
  if (found == PushedContexts().end()) return kWrongArgument;
  const PushedContext pushed = found->second;
  PushedContexts().erase(found);
  return pushed.viewer->RemoveContext(pushed.context);
}

}  // namespace vblur
