#include "server/ServerModule.h"

#include <new>

#include "effect/Blur.h"
#include "overlay/Drawing.h"
#include "overlay/HvTInteract.h"
#include "pages/FullBlurPPG.h"
#include "pages/FullCropPPG.h"
#include "pages/HelpPPG.h"
#include "pages/HvTransitionPPG.h"
#include "pages/TransitionBlurPPG.h"
#include "resources/Bitmaps.h"
#include "resources/Dialogs.h"
#include "resources/Strings.h"
#include "server/CDsClassFactory.h"
#include "server/ServerClasses.h"

namespace vblur {

namespace {

template <class Page>
IClassFactory* MakePageFactory() {
  // Set once, before the first page.
  [[maybe_unused]] static const bool ready = [] {
    HvDsPPG::module = ServerModule();
    Page::liveObjects = &ServerLocks();
    return true;
  }();
  return new (std::nothrow) CDsClassFactory<Page, 0, 0>(ServerLocks());
}

}  // namespace

#ifndef _WIN32
HMODULE ServerModule() {
  static const Module module{resources::Strings(), resources::Bitmaps(), resources::Dialogs()};
  return &module;
}
#endif

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
  // Set once, before the first tool. The shared quadric is deleted when the server is unloaded, on Windows by DllMain.
  struct ToolsOfServer {
    ToolsOfServer() { HvTInteract::liveObjects = &ServerLocks(); }
#ifndef _WIN32
    ~ToolsOfServer() {
      ReleaseOverlayQuadric();
    }
#endif
  };
  static const ToolsOfServer tools;
  return new (std::nothrow) CDsClassFactory<HvTInteract, 0, 0>(ServerLocks());
}

IClassFactory* MakeFullBlurPageFactory() {
  return MakePageFactory<FullBlurPPG>();
}

IClassFactory* MakeTransitionBlurPageFactory() {
  return MakePageFactory<TransitionBlurPPG>();
}

IClassFactory* MakeTransitionPageFactory() {
  return MakePageFactory<HvTransitionPPG>();
}

IClassFactory* MakeHelpPageFactory() {
  return MakePageFactory<HelpPPG>();
}

IClassFactory* MakeCropPageFactory() {
  return MakePageFactory<FullCropPPG>();
}

}  // namespace vblur
