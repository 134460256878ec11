#include "effect/ProcessSettings.h"

#include <algorithm>
#include <string>

#include "image/HvCpu.h"
#include "image/HvThreads.h"

namespace vblur {

HRESULT ProcessSettings::SetRenderThreads(std::int32_t count) {
  if (count < 1) return kWrongArgument;
  HvSetThreadCount(count);
  return kOk;
}

HRESULT ProcessSettings::SetCpuLevel(const char* level) {
  if (level == nullptr) return kNullPointer;
  return HvSetCpuLevel(level) ? kOk : kWrongArgument;
}

const char* ProcessSettings::GetCpuLevels() {
  static const std::string levels = [] {
    std::string all;
    for (const std::string& level : HvCpuLevels())
      all += (all.empty() ? "" : " ") + level;
    return all;
  }();
  return levels.c_str();
}

const char* ProcessSettings::GetCpuLevel() {
  const std::string level = HvCpuLevel();
  const auto& all = HvCpuLevels();
  const auto found = std::find(all.begin(), all.end(), level);
  return found == all.end() ? "native" : found->c_str();
}

void StopRenderThreads() {
  HvStopThreads();
}

}  // namespace vblur
