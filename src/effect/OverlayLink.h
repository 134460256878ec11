// What an effect holds of its controls over the viewer.
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
  // Which thread the tool belongs to, while there is one.
  std::atomic<std::thread::id> overlayThread{};
  // A clone has reported a place from another thread, and the controls have not followed yet.
  std::atomic<bool> overlayPlaceStale{false};
  // The controls have been placed once.
  bool overlayReady = false;
};

}  // namespace vblur
