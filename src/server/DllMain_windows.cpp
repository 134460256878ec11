// What the system calls when it loads and unloads the server, and the module's handle.
#include "overlay/Drawing.h"
#include "server/ServerModule.h"

#include <windows.h>

#ifdef __GLIBCXX__
namespace __gnu_cxx {
// Frees what the compiler's library keeps for exceptions when memory has run out; it does so itself nowhere.
void __freeres();
}  // namespace __gnu_cxx
#endif

namespace vblur {
namespace {

HMODULE module = nullptr;

}  // namespace

HMODULE ServerModule() {
  return module;
}

}  // namespace vblur

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void* processEnds) {
  if (reason == DLL_PROCESS_ATTACH) {
    vblur::module = instance;
    DisableThreadLibraryCalls(instance);
  } else if (reason == DLL_PROCESS_DETACH) {
    vblur::ReleaseOverlayQuadric();
#ifdef __GLIBCXX__
    // What the end of a process runs after this may throw.
    if (processEnds == nullptr) __gnu_cxx::__freeres();
#else
    static_cast<void>(processEnds);
#endif
  }
  return TRUE;
}
