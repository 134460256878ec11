// Broken pipes, for which Windows sends no signal.
#pragma once

namespace vblur::host {

// What WriteSome calls when nobody reads the pipe; null for nothing.
void WhenPipesBreak(void (*call)());

}  // namespace vblur::host
