// Process-wide settings: threads and CPU level.
#pragma once

#include "platform/IVBlurProcess.h"

namespace vblur {

class ProcessSettings : public IVBlurProcess {
 public:
  HRESULT SetRenderThreads(std::int32_t count) override;
  HRESULT SetCpuLevel(const char* level) override;
  const char* GetCpuLevels() override;
  const char* GetCpuLevel() override;

 protected:
  ~ProcessSettings() = default;
};

// Ends the threads that renders have left waiting; the next render starts new ones. For a server that may be unloaded.
void StopRenderThreads();

}  // namespace vblur
