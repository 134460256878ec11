// Broken pipes, for which Windows sends no signal.
#pragma once

namespace vblur::host {

// What WriteSome and Flush call when nobody reads the pipe; null for nothing.
void WhenPipesBreak(void (*call)());

}  // namespace vblur::host
