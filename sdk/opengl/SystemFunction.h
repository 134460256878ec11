// Functions of the system's OpenGL and GLU, looked for at run time.
#pragma once

namespace vblur {

enum class GlLibrary { OpenGl, Glu };

// Null without the library or the function. A library is loaded at the first call and never unloaded: drivers do not
// support that.
void* FindGlFunction(GlLibrary library, const char* name);

}  // namespace vblur
