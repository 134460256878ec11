// Functions of the system's OpenGL and GLU, looked for at run time.
#pragma once

namespace vblur {

enum class GlLibrary { OpenGl, Glu };

// Null where the system has no such library, or the library no such function. A library is loaded by the first call
// and stays: drivers do not survive being unloaded.
void* FindGlFunction(GlLibrary library, const char* name);

}  // namespace vblur
