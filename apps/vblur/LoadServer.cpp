#include "apps/vblur/LoadServer.h"

#include "host/hosted/HostedEffect.h"

namespace vblur::cli {

std::unique_ptr<host::EffectServer> LoadServer(const GlobalOptions& global) {
  auto server = std::make_unique<host::EffectServer>(global.server.empty() ? host::DefaultServerFile()
                                                                           : std::filesystem::path(global.server));
  if (global.threads > 0) host::HostedEffect(server->CreateEffect()).SetRenderThreads(global.threads);
  if (!global.cpu.empty()) host::HostedEffect(server->CreateEffect()).SetCpuLevel(global.cpu);
  return server;
}

}  // namespace vblur::cli
