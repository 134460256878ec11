#include "sdk/opengl/SystemFunction.h"

#include <initializer_list>

#include <dlfcn.h>

namespace vblur {
namespace {

void* LoadFirst(std::initializer_list<const char*> names) {
  for (const char* name : names) {
    if (void* const library = ::dlopen(name, RTLD_LAZY | RTLD_LOCAL)) return library;
  }
  return nullptr;
}

}  // namespace

void* FindGlFunction(GlLibrary library, const char* name) {
  // The first is OpenGL without the window system's part, which the second includes.
  static void* const openGl = LoadFirst({"libOpenGL.so.0", "libGL.so.1"});
  static void* const glu = openGl == nullptr ? nullptr : LoadFirst({"libGLU.so.1"});
  void* const loaded = library == GlLibrary::Glu ? glu : openGl;
  return loaded == nullptr ? nullptr : ::dlsym(loaded, name);
}

}  // namespace vblur
