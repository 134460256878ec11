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

}  // namespace vblur
