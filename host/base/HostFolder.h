// The folder of the host's library, which also holds what it loads at run time, installed or in the build.
#pragma once

#include <filesystem>

namespace vblur::host {

std::filesystem::path HostFolder();

}  // namespace vblur::host
