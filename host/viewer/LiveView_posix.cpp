#include "host/viewer/LiveView.h"

#include "host/base/Failure.h"

namespace vblur::host {

void ShowUntilClosed(ViewSession&, const std::string&) {
  throw Failure(ExitCode::SomeFramesFailed, "views are shown in windows on Windows only");
}

}  // namespace vblur::host
