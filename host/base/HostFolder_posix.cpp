#include "host/base/HostFolder.h"

#include <system_error>

#include <dlfcn.h>

namespace vblur::host {

std::filesystem::path HostFolder() {
  Dl_info host{};
  ::dladdr(reinterpret_cast<void*>(&HostFolder), &host);
  // Without steps such as bin/../lib, for messages.
  std::error_code error;
  return std::filesystem::weakly_canonical(host.dli_fname, error).parent_path();
}

}  // namespace vblur::host
