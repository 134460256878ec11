// What effects share: crop and transition parameters, frame state, and the link to the controls over the viewer.
#pragma once

#include <array>
#include <cstdint>

#include "effect/EffectKind.h"
#include "effect/FrameState.h"
#include "effect/OverlayLink.h"
#include "effect/Parameters.h"
#include "effect/Transition.h"

namespace vblur {

// What a clone copies.
struct HvDsEffectState {
  // 0 until the host sets the kind.
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

  // The horizontal and vertical size of the blur at a time, in pixels of the rendered picture.
  virtual BlurSize GetBlurSize(double) { return {}; }
  // Puts the controls on the tool; nothing without a tool.
  virtual void AttachOverlay() {}
  // A page comes to the front; its name selects the visible control. Nothing without a tool. The numbers are unused.
  virtual void PageShown(const char*, std::int32_t = 0, std::int32_t = 0) {}
  // Moves the controls to the first input's place in the last frame. Nothing without a tool.
  virtual void UpdateOverlayPlacement() {}
  // The effect cannot be aggregated.
  virtual HRESULT QueryAggregation() { return kNoAggregation; }
  // The derived effect's part of Verify.
  virtual HRESULT VerifyEffect() { return kOk; }

  // Called when a page opens, with the edited object or its viewer. The first call creates the viewer tool, pushes it
  // on the viewer and attaches the controls. kNullPointer for null, else the failure to create the tool. Paint
  // effects have no controls.
  HRESULT ConnectOverlay(IUnknown* viewer);
  // Called when a page closes. The last call releases the tool.
  void DisconnectOverlay();
  // Gives back a reference to the whole object, for those that hold it as its family's.
  void ReleaseObject();
  // Null while no page is open. Borrowed.
  HvTInteract* OverlayTool() const { return overlayTool.get(); }

 protected:
  static constexpr std::int32_t kPagesAdded = 1;  // of onceWord

  // Linear ramps and cross fade, until SetDefaults.
  HvDsEffect() {
    transition.ramping = 0;
    transition.scaling = kCrossFade;
  }
  // A clone has no tool.
  HvDsEffect(const HvDsEffect& other) : HvDsEffectState(other), HvDsOverlayLink() {}
  virtual ~HvDsEffect() = default;

  // Takes the controls from the tool.
  virtual void DetachOverlay() {}
  // Releases the tool. The derived class's destructor calls it while its controls still exist.
  void ReleaseOverlay();

  // Things done once per object, one bit each.
  std::int32_t onceWord = 0;
};

}  // namespace vblur
