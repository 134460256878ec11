// An effect's side of the link to its controls over the viewer.
#pragma once

#include <atomic>
#include <cstdint>
#include <thread>

#include "overlay/HvTInteract.h"
#include "platform/ComPtr.h"

namespace vblur {

struct HvDsOverlayLink {
  ComPtr<HvTInteract> overlayTool;
  // The viewer's handle for the tool, 0 for none.
  std::uintptr_t overlayContext = 0;
  std::int32_t overlayUseCount = 0;
  // The tool's thread, while there is a tool.
  std::atomic<std::thread::id> overlayThread{};
  // A clone on another thread has reported a place that the controls have not taken yet.
  std::atomic<bool> overlayPlaceStale{false};
  // The controls have been placed once.
  bool overlayReady = false;
};

}  // namespace vblur
