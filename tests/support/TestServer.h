// The effect as programs get it: from this build's server, loaded at run time.
#pragma once

#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "host/hosted/EffectServer.h"
#include "host/hosted/HostedEffect.h"
#include "platform/IVBlurProcess.h"

namespace vblur {

inline const host::EffectServer& TestServer() {
  static const host::EffectServer server(host::DefaultServerFile());
  return server;
}

inline ComPtr<IDSImageEffect> MakeEffect() {
  return TestServer().CreateEffect();
}

// Threads of every render from now on.
inline void SetRenderThreads(std::int32_t count) {
  host::HostedEffect(MakeEffect()).SetRenderThreads(count);
}

// The CPU level of every render from now on. Throws host::Failure for a level that the machine does not have.
inline void SetCpuLevel(const std::string& level) {
  host::HostedEffect(MakeEffect()).SetCpuLevel(level);
}

// All levels of the machine, the twin first.
inline std::vector<std::string> CpuLevels() {
  const auto process = MakeEffect().As<IVBlurProcess>();
  std::istringstream names(process->GetCpuLevels());
  return {std::istream_iterator<std::string>(names), {}};
}

}  // namespace vblur
