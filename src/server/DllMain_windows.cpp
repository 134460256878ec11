// What the system calls when it loads and unloads the server, and the module's handle.
#include "overlay/Drawing.h"
#include "server/ServerModule.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace vblur {
namespace {

HMODULE module = nullptr;

}  // namespace

HMODULE ServerModule() {
  return module;
}

}  // namespace vblur

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) {
    vblur::module = instance;
    DisableThreadLibraryCalls(instance);
  } else if (reason == DLL_PROCESS_DETACH) {
    vblur::ReleaseOverlayQuadric();
  }
  return TRUE;
}
