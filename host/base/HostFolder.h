// Where the host's library lies: what it loads at run time lies beside it, installed or just built.
#pragma once

#include <filesystem>

namespace vblur::host {

std::filesystem::path HostFolder();

}  // namespace vblur::host
