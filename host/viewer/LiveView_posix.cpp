#include "host/viewer/LiveView.h"

#include "host/base/Failure.h"

namespace vblur::host {

void RequireLiveView(const std::string& place) {
  Refuse(place, "expected Windows, a view has no window here");
}

void ShowUntilClosed(ViewSession&, const std::string& title) {
  RequireLiveView(title);
}

}  // namespace vblur::host
