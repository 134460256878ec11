#include "apps/vblur/LoadServer.h"

#include "host/base/Failure.h"
#include "host/base/Utf8.h"
#include "host/hosted/HostedEffect.h"

namespace vblur::cli {

namespace {

void SetCpuLevel(host::EffectServer& server, const std::string& level) {
  try {
    host::HostedEffect(server.CreateEffect()).SetCpuLevel(level);
  } catch (const host::Failure& failure) {
    host::Refuse(failure.Code(), "--cpu", failure.what());
  }
}

}  // namespace

std::unique_ptr<host::EffectServer> LoadServer(const GlobalOptions& global) {
  auto server = std::make_unique<host::EffectServer>(global.server.empty() ? host::DefaultServerFile()
                                                                           : host::PathOf(global.server));
  if (global.threads > 0) host::HostedEffect(server->CreateEffect()).SetRenderThreads(global.threads);
  if (!global.cpu.empty()) SetCpuLevel(*server, global.cpu);
  return server;
}

}  // namespace vblur::cli
