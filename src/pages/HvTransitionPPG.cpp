#include "pages/HvTransitionPPG.h"

#include "effect/Transition.h"
#include "pages/ControlMap.h"
#include "pages/ResetValues.h"
#include "properties/ClassIds.h"
#include "properties/PageNames.h"
#include "resources/Numbers.h"

namespace vblur {

struct HvTransitionPPG::Rows {
  static constexpr ControlRow kEffectScaling{resources::transition::kEffectScaling,
                                             resources::transition::kEffectScalingLabel, PropertyId::EffectScaling};
  static constexpr ControlRow kFinish{resources::transition::kFinishFadingOutFirstClip,
                                      resources::transition::kFinishFadingOutFirstClipLabel,
                                      PropertyId::FinishFadingOutFirstClip};
  static constexpr ControlRow kStart{resources::transition::kStartFadingInSecondClip,
                                     resources::transition::kStartFadingInSecondClipLabel,
                                     PropertyId::StartFadingInSecondClip};
  static constexpr ControlRow kRamping{resources::transition::kTransitionRamping,
                                       resources::transition::kTransitionRampingLabel, PropertyId::TransitionRamping};
};

HvTransitionPPG::HvTransitionPPG()
    : CountedPage(resources::kTransitionDialog, resources::strings::kTransitionTitle, pages::kTransition.data()),
      finishFadingOutFirstClip_(*this, Rows::kFinish),
      startFadingInSecondClip_(*this, Rows::kStart),
      transitionRamping_(*this, Rows::kRamping),
      effectScaling_(*this, Rows::kEffectScaling) {}

HvTransitionPPG::~HvTransitionPPG() {
  DisconnectEffect();
}

CDSPPGControlMap* HvTransitionPPG::GetControlMap() {
  using namespace control_map;
  static constexpr CDSPPGControlMapEntry kEntries[] = {
      Control<&HvTransitionPPG::effectScaling_>(Rows::kEffectScaling),
      Control<&HvTransitionPPG::finishFadingOutFirstClip_>(Rows::kFinish),
      Control<&HvTransitionPPG::startFadingInSecondClip_>(Rows::kStart),
      Control<&HvTransitionPPG::transitionRamping_>(Rows::kRamping),
      Button(resources::transition::kReset, control_flags::kButton, resources::strings::kTransitionResetHint,
             &Run<&HvTransitionPPG::Reset>),
      kEnd,
  };
  static CDSPPGControlMap map{&m_ControlMap, kOldName, kEntries};
  map.Initialize();
  return &map;
}

// Without the base's: the lists show their defaults until the first notice.
HRESULT HvTransitionPPG::OnInitDialog() {
  SetNumberRange(Rows::kFinish);
  SetNumberRange(Rows::kStart);
  FillList(transitionRamping_, Rows::kRamping);
  FillList(effectScaling_, Rows::kEffectScaling);
  effect = static_cast<HvDsEffect*>(QueryEffect(kDsEffectObject));
  ConnectOverlay();
  return kOk;
}

void HvTransitionPPG::Reset() {
  const Suspension suspension(*this);
  const UndoBracket bracket(*this);
  SetDefault(finishFadingOutFirstClip_, Rows::kFinish);
  SetDefault(startFadingInSecondClip_, Rows::kStart);
  SetDefault(transitionRamping_, Rows::kRamping);
  effectScaling_.Set(kCrossFade);  // not the default of the property
}

}  // namespace vblur
