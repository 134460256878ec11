// Process-wide settings of all effects, for the program that runs them.
#pragma once

#include "Com.h"

namespace vblur {

class IVBlurProcess : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A822}");

  // Threads per render, at least 1, else kWrongArgument. The default is the number of processors. Takes effect between
  // renders.
  virtual HRESULT SetRenderThreads(std::int32_t count) = 0;
  // Which code renders: "twin" (plain C++), the name of an instruction set, or "native" (the default): the best that
  // the machine has. kWrongArgument for one that it lacks. Pictures do not depend on it. Takes effect between renders.
  virtual HRESULT SetCpuLevel(const char* level) = 0;
  // The machine's levels, separated by spaces, and the current one; valid while the server is loaded.
  virtual const char* GetCpuLevels() = 0;
  virtual const char* GetCpuLevel() = 0;

 protected:
  ~IVBlurProcess() = default;
};

}  // namespace vblur
