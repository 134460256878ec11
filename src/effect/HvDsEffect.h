// What every effect of the family has: crop and transition parameters, the state of the frame that is being
// rendered, and the link to the controls over the viewer.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <thread>

#include "composite/ApplyCrop.h"
#include "effect/BlurSize.h"
#include "effect/Parameters.h"
#include "effect/PlaceRecord.h"
#include "image/HvInteruptable.h"
#include "image/Pixels.h"
#include "overlay/HvTInteract.h"
#include "platform/ComPtr.h"

namespace vblur {

// The kinds that the effect tells apart by number.
enum HvEffectKind : std::int32_t {
  kKindFilter = 1,
  kKindSource = 2,
  kKindGenerator = 3,
  kKindPaint = 4,  // the effect painted through a mask
  kKindTransition = 5,
  kKindUnused = 6,  // no family makes it; it needs an input
  kKindOther = 7,
};

// How fields are rendered: as pictures of half the height, or as whole pictures of which each
// processor works on every other row.
enum HvFieldRendering : std::int32_t { kHalfHeightFields = 1, kFieldRows = 2 };

// How the blur follows a transition: the values of `Effect Scaling`.
enum HvEffectScaling : std::int32_t { kDontScale = 0, kFadeInAndOut = 1, kCrossFade = 2 };

// What an effect holds and a clone of it takes over.
struct HvDsEffectState {
  // 0 until the host says what the effect is used as.
  std::int32_t effectKind = 0;
  std::int32_t fieldMode = kHalfHeightFields;
  std::int32_t cropMode = kCropBoxAndEdges;
  std::int32_t effectFlags = 0;
  std::int32_t transitionMixesInputs = 0;
  std::array<char16_t, 260> name{};

  CropParameters crop;
  TransitionParameters transition;

  // The frame; rewritten by every render.
  std::int32_t fieldIndex = 0;
  float fieldScale = 1.0f;
  // The crop as fractions of the picture, not limited, and its colour in 0..1 with an alpha of 0.
  float cropLeft = 0.0f;
  float cropRight = 1.0f;
  float cropBottom = 0.0f;
  float cropTop = 1.0f;
  Rf cropColour{};
  // The region to render, both ends inclusive.
  std::int32_t regionX0 = 0;
  std::int32_t regionX1 = 0;
  std::int32_t regionY0 = 0;
  std::int32_t regionY1 = 0;
  PlaceRecord outputPlace;
  PlaceRecord inputPlace;
  PlaceRecord input2Place;
  // The channel choice of the frame writes alpha.
  std::int32_t alphaAffected = 1;
  float transitionProgress = 0.0f;
  float transitionMix = 0.0f;    // share of the second clip, after the ramp
  float transitionScale = 1.0f;  // factor on the blur amount
  bool transitionTwoPass = false;
};

class HvDsEffect : protected HvDsEffectState {
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
  // The meaning of effectFlags, as far as something reads them.
  enum Flag : std::int32_t {
    kFlagOwnWord = 1,
    kFlagWholeFrames = 2,
    kFlagMasks = 4,
    kFlagTwoClips = 16,
    kFlagTransition = 32,
    kFlagChannelMasks = 64,  // the stage that puts masked channels back runs
  };
  static constexpr std::int32_t kPagesAdded = 1;  // of onceWord

  // The transition's ramps stand at linear and cross-fade until the defaults are set.
  HvDsEffect() {
    transition.ramping = 0;
    transition.scaling = kCrossFade;
  }
  // A clone has no tool: it is edited by nobody.
  HvDsEffect(const HvDsEffect& other) : HvDsEffectState(other) {}
  virtual ~HvDsEffect() = default;

  // Takes the controls from the tool.
  virtual void DetachOverlay() {}
  // What the last page does. The derived class's destructor calls it, while there still are controls to take
  // from the tool and properties to unlink.
  void ReleaseOverlay();

  HvInterruptRecord interrupt;
  // What has been done once for this object, a bit each.
  std::int32_t onceWord = 0;

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
