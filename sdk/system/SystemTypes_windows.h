// The system's own header, for the files that pass calls of platform/ on to it. It comes after those of platform/,
// whose constants its macros would replace.
#pragma once

#include <bit>
#include <cstdint>

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
// After it, whose types they use.
#include <objbase.h>
#include <shellapi.h>

namespace vblur::host {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

inline const wchar_t* SystemText(const char16_t* text) {
  return reinterpret_cast<const wchar_t*>(text);
}
inline wchar_t* SystemText(char16_t* text) {
  return reinterpret_cast<wchar_t*>(text);
}

}  // namespace vblur::host
