// Whether pages can have their windows.
#pragma once

namespace vblur::host {

// On Windows services and remote shells may be without a desktop; elsewhere pages make no windows of the system's.
bool HasDesktop();

}  // namespace vblur::host
