// An effect's side of the link to its controls over the viewer.
#pragma once

#include <atomic>
#include <cstdint>

#include "overlay/HvTInteract.h"
#include "platform/ComPtr.h"

namespace vblur {

struct HvDsOverlayLink {
  ComPtr<HvTInteract> overlayTool;
  // The viewer's handle for the tool, 0 for none.
  std::uintptr_t overlayContext = 0;
  std::int32_t overlayUseCount = 0;
  // The number of the tool's thread while there is a tool, else 0.
  std::atomic<std::uintptr_t> overlayThread{0};
  // A clone on another thread has reported a place that the controls have not taken yet.
  std::atomic<bool> overlayPlaceStale{false};
  // The controls have been placed once.
  bool overlayReady = false;
};

}  // namespace vblur
