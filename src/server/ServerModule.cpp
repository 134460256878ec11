#include "server/ServerModule.h"

#include <new>

#include "effect/Blur.h"
#include "overlay/Drawing.h"
#include "overlay/HvTInteract.h"
#include "resources/Bitmaps.h"
#include "resources/Dialogs.h"
#include "resources/Strings.h"
#include "server/CDsClassFactory.h"
#include "server/ServerClasses.h"

namespace vblur {

HMODULE ServerModule() {
  static const Module module{resources::Strings(), resources::Bitmaps(), resources::Dialogs()};
  return &module;
}

std::atomic<std::int32_t>& ServerLocks() {
  static std::atomic<std::int32_t> locks = 0;
  return locks;
}

IClassFactory* MakeBlurFactory() {
  // Set once, before the first effect.
  [[maybe_unused]] static const bool ready = [] {
    Blur::module = ServerModule();
    Blur::liveObjects = &ServerLocks();
    return true;
  }();
  return new (std::nothrow) CDsClassFactory<Blur, 0, 0>(ServerLocks());
}

IClassFactory* MakeViewerToolFactory() {
  // Set once, before the first tool. The shared quadric is deleted when the server is unloaded.
  struct ToolsOfServer {
    ToolsOfServer() { HvTInteract::liveObjects = &ServerLocks(); }
    ~ToolsOfServer() { ReleaseOverlayQuadric(); }
  };
  static const ToolsOfServer tools;
  return new (std::nothrow) CDsClassFactory<HvTInteract, 0, 0>(ServerLocks());
}

}  // namespace vblur
