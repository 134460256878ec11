// The server's texts, pictures and dialogs for tests that link its parts. On Windows they are resources of the test
// program.
#pragma once

#include "platform/Module.h"
#include "resources/Bitmaps.h"
#include "resources/Dialogs.h"
#include "resources/Strings.h"

#ifdef _WIN32
extern "C" __declspec(dllimport) HINSTANCE__* GetModuleHandleW(const wchar_t* name);
#endif

namespace vblur::test {

inline HMODULE TestModule() {
#ifdef _WIN32
  return ::GetModuleHandleW(nullptr);
#else
  static const Module module{resources::Strings(), resources::Bitmaps(), resources::Dialogs()};
  return &module;
#endif
}

}  // namespace vblur::test
