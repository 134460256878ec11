#include "pages/TransitionBlurPPG.h"

#include <utility>

#include "pages/ControlMap.h"
#include "pages/ResetValues.h"
#include "properties/ClassIds.h"
#include "properties/PageNames.h"
#include "resources/Numbers.h"

namespace vblur {

struct TransitionBlurPPG::Rows {
  static constexpr ControlRow kMethod{resources::transition_blur::kMethod, resources::transition_blur::kMethodLabel,
                                      PropertyId::Method, control_flags::kSelection};
  static constexpr ControlRow kChannels{resources::transition_blur::kChannels,
                                        resources::transition_blur::kChannelsLabel, PropertyId::Channels,
                                        control_flags::kSelection};
  static constexpr ControlRow kBlur{resources::transition_blur::kBlur, resources::transition_blur::kBlurLabel,
                                    PropertyId::Blur, control_flags::kAnimated};
  static constexpr ControlRow kAspect{resources::transition_blur::kAspect, resources::transition_blur::kAspectLabel,
                                      PropertyId::Aspect, control_flags::kAnimated};
};

TransitionBlurPPG::TransitionBlurPPG()
    : CountedPage(resources::kTransitionBlurDialog, resources::strings::kTransitionBlurTitle,
                  pages::kTransitionBlur.data()),
      blur_(*this, Rows::kBlur),
      aspect_(*this, Rows::kAspect),
      channels_(*this, Rows::kChannels),
      method_(*this, Rows::kMethod) {}

TransitionBlurPPG::~TransitionBlurPPG() {
  if (std::exchange(blurEffect_, nullptr) != nullptr) DisconnectEffect();
}

CDSPPGControlMap* TransitionBlurPPG::GetControlMap() {
  using namespace control_map;
  static constexpr CDSPPGControlMapEntry kEntries[] = {
      Control<&TransitionBlurPPG::method_>(Rows::kMethod),
      Control<&TransitionBlurPPG::channels_>(Rows::kChannels),
      Control<&TransitionBlurPPG::blur_>(Rows::kBlur),
      Control<&TransitionBlurPPG::aspect_>(Rows::kAspect),
      Button(resources::transition_blur::kReset, kButtonWithTip, resources::strings::kTransitionBlurResetHint,
             &Run<&TransitionBlurPPG::Reset>),
      kEnd,
  };
  static CDSPPGControlMap map{&m_ControlMap, kName, kEntries};
  map.Initialize();
  return &map;
}

HRESULT TransitionBlurPPG::OnInitDialog() {
  const HRESULT result = CDSPropertyPage::OnInitDialog();
  SetNumberRange(Rows::kBlur);
  SetNumberRange(Rows::kAspect);
  FillList(channels_, Rows::kChannels);
  FillList(method_, Rows::kMethod);
  effect = blurEffect_ = static_cast<Blur*>(QueryEffect(kBlurObject));
  ConnectOverlay();
  return result;
}

void TransitionBlurPPG::Reset() {
  const UndoBracket bracket(*this);
  SetDefault(blur_, Rows::kBlur);
  SetDefault(aspect_, Rows::kAspect);
  SetDefault(channels_, Rows::kChannels);
  SetDefault(method_, Rows::kMethod);
}

}  // namespace vblur
