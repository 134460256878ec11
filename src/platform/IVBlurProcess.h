// What holds for all effects of a process at once, for the program that runs them.
#pragma once

#include "Com.h"

namespace vblur {

class IVBlurProcess : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A822}");

  // How many threads every render uses, at least 1; kWrongArgument for fewer. Without a call it is the
  // number of processors that the machine reports. Takes effect between renders.
  virtual HRESULT SetRenderThreads(std::int32_t count) = 0;
  // Which code renders: "twin" for the plain one, the name of an instruction set, or "native" for the best
  // that the machine has, as in the beginning. kWrongArgument for one that it does not have. The pictures do
  // not depend on it. Takes effect between renders.
  virtual HRESULT SetCpuLevel(const char* level) = 0;
  // The levels that the machine has, with a space between, and the one in use; valid while the server is.
  virtual const char* GetCpuLevels() = 0;
  virtual const char* GetCpuLevel() = 0;

 protected:
  ~IVBlurProcess() = default;
};

}  // namespace vblur
