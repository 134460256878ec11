// Loads the effect server and applies the process-wide options.
#pragma once

#include <memory>

#include "apps/vblur/RunOptions.h"
#include "host/hosted/EffectServer.h"

namespace vblur::cli {

// The server that was named, or that of this installation. Throws host::Failure (cannot read).
std::unique_ptr<host::EffectServer> LoadServer(const GlobalOptions& global);

}  // namespace vblur::cli
