#include "host/base/HostFolder.h"

#include <system_error>

#include <dlfcn.h>

namespace vblur::host {

std::filesystem::path HostFolder() {
  Dl_info host{};
  ::dladdr(reinterpret_cast<void*>(&HostFolder), &host);
  // A way such as bin/../lib reads badly in messages.
  std::error_code error;
  return std::filesystem::weakly_canonical(host.dli_fname, error).parent_path();
}

}  // namespace vblur::host
