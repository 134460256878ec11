// The system's OpenGL header. On Windows it asks for macros of the system's own header, which few files include; where
// one does, it comes first.
#pragma once

#ifdef _WIN32
#ifndef WINGDIAPI
#define WINGDIAPI
#endif
#ifndef APIENTRY
#define APIENTRY __stdcall
#endif
#ifndef CALLBACK
#define CALLBACK __stdcall
#endif
#endif

#include <GL/gl.h>
// After it, whose types it uses.
#include <GL/glext.h>
