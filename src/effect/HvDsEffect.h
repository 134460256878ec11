// What every effect of the family has: crop and transition parameters, the state of the frame that is being
// rendered, and the link to the controls over the viewer.
#pragma once

#include <array>
#include <cstdint>

#include "effect/EffectKind.h"
#include "effect/FrameState.h"
#include "effect/OverlayLink.h"
#include "effect/Parameters.h"
#include "effect/Transition.h"

namespace vblur {

// What an effect holds and a clone of it takes over.
struct HvDsEffectState {
  // 0 until the host says what the effect is used as.
  std::int32_t effectKind = 0;
  std::int32_t effectFlags = 0;
  std::int32_t transitionMixesInputs = 0;
  std::array<char16_t, 260> name{};

  CropParameters crop;
  TransitionParameters transition;

  FrameState frame;
};

class HvDsEffect : protected HvDsEffectState, protected HvDsOverlayLink {
 public:
  HvDsEffect& operator=(const HvDsEffect&) = delete;

  // The size of the blur at a time: horizontal and vertical, in pixels of the picture being rendered.
  virtual BlurSize GetBlurSize(double) { return {}; }
  // Puts the controls on the tool; nothing without a tool.
  virtual void AttachOverlay() {}
  // A page comes to the front: its name says which control is seen. Nothing without a tool. The two numbers are
  // not read.
  virtual void PageShown(const char*, std::int32_t = 0, std::int32_t = 0) {}
  // The controls follow the first input's place, as the last frame had it. Nothing without a tool.
  virtual void UpdateOverlayPlacement() {}
  // Whether the effect can be part of another object: never.
  virtual HRESULT QueryAggregation() { return kNoAggregation; }
  // A failure makes Verify fail.
  virtual HRESULT VerifyEffect() { return kOk; }

  // A page opens, with the object that it edits or the viewer that it stands beside: the first one makes the
  // viewer tool, puts it on the viewer and attaches the controls. kNullPointer for null; the failure of what
  // made the tool. Effects that are painted have no controls.
  HRESULT ConnectOverlay(IUnknown* viewer);
  // A page closes: with the last one the tool goes.
  void DisconnectOverlay();
  // Null while no page is open. Not owned by who asks.
  HvTInteract* OverlayTool() const { return overlayTool.get(); }

 protected:
  static constexpr std::int32_t kPagesAdded = 1;  // of onceWord

  // The transition's ramps stand at linear and cross-fade until the defaults are set.
  HvDsEffect() {
    transition.ramping = 0;
    transition.scaling = kCrossFade;
  }
  // A clone has no tool: it is edited by nobody.
  HvDsEffect(const HvDsEffect& other) : HvDsEffectState(other), HvDsOverlayLink() {}
  virtual ~HvDsEffect() = default;

  // Takes the controls from the tool.
  virtual void DetachOverlay() {}
  // What the last page does. The derived class's destructor calls it, while there still are controls to take
  // from the tool and properties to unlink.
  void ReleaseOverlay();

  // What has been done once for this object, a bit each.
  std::int32_t onceWord = 0;
};

}  // namespace vblur
