// The effect as programs get it: from the server of this build, loaded at run time.
#pragma once

#include "host/EffectServer.h"
#include "host/HostedEffect.h"

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

}  // namespace vblur
