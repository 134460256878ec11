#include "pages/FullBlurPPG.h"

#include <utility>

#include "pages/ControlMap.h"
#include "pages/ResetValues.h"
#include "properties/ClassIds.h"
#include "properties/PageNames.h"
#include "resources/Numbers.h"

namespace vblur {

struct FullBlurPPG::Rows {
  static constexpr ControlRow kMethod{resources::full_blur::kMethod, resources::full_blur::kMethodLabel,
                                      PropertyId::Method, control_flags::kSelection};
  static constexpr ControlRow kChannels{resources::full_blur::kChannels, resources::full_blur::kChannelsLabel,
                                        PropertyId::Channels, control_flags::kSelection};
  static constexpr ControlRow kBlur{resources::full_blur::kBlur, resources::full_blur::kBlurLabel, PropertyId::Blur,
                                    control_flags::kAnimated};
  static constexpr ControlRow kAspect{resources::full_blur::kAspect, resources::full_blur::kAspectLabel,
                                      PropertyId::Aspect, control_flags::kAnimated};
  static constexpr ControlRow kMixBack{resources::full_blur::kMixBack, 0, PropertyId::MixBack,
                                       control_flags::kSelection};
  static constexpr ControlRow kBlend{resources::full_blur::kBlend, resources::full_blur::kBlendLabel, PropertyId::Blend,
                                     control_flags::kAnimated};
  static constexpr ControlRow kEffectGain{resources::full_blur::kEffectGain, resources::full_blur::kEffectGainLabel,
                                          PropertyId::EffectGain, control_flags::kAnimated};
  static constexpr ControlRow kSourceGain{resources::full_blur::kSourceGain, resources::full_blur::kSourceGainLabel,
                                          PropertyId::SourceGain, control_flags::kAnimated};
};

FullBlurPPG::FullBlurPPG()
    : CountedPage(resources::kFullBlurDialog, resources::strings::kFullBlurTitle, pages::kFullBlur.data()),
      blur_(*this, Rows::kBlur),
      aspect_(*this, Rows::kAspect),
      channels_(*this, Rows::kChannels),
      method_(*this, Rows::kMethod),
      mixBack_(*this, Rows::kMixBack),
      blend_(*this, Rows::kBlend),
      effectGain_(*this, Rows::kEffectGain),
      sourceGain_(*this, Rows::kSourceGain) {}

FullBlurPPG::~FullBlurPPG() {
  if (std::exchange(blurEffect_, nullptr) != nullptr) DisconnectEffect();
}

CDSPPGControlMap* FullBlurPPG::GetControlMap() {
  using namespace control_map;
  static constexpr CDSPPGControlMapEntry kEntries[] = {
      Control<&FullBlurPPG::method_>(Rows::kMethod),
      Control<&FullBlurPPG::channels_>(Rows::kChannels),
      Control<&FullBlurPPG::blur_>(Rows::kBlur),
      Control<&FullBlurPPG::aspect_>(Rows::kAspect),
      Control<&FullBlurPPG::mixBack_>(Rows::kMixBack, &Run<&FullBlurPPG::ApplyEnableRule>),
      Control<&FullBlurPPG::blend_>(Rows::kBlend),
      Control<&FullBlurPPG::effectGain_>(Rows::kEffectGain),
      Control<&FullBlurPPG::sourceGain_>(Rows::kSourceGain),
      Button(resources::full_blur::kReset, kButtonWithTip, resources::strings::kFullBlurResetHint,
             &Run<&FullBlurPPG::Reset>),
      kEnd,
  };
  static CDSPPGControlMap map{&m_ControlMap, kName, kEntries};
  map.Initialize();
  return &map;
}

HRESULT FullBlurPPG::OnInitDialog() {
  const HRESULT result = CDSPropertyPage::OnInitDialog();
  SetNumberRange(Rows::kBlur);
  SetNumberRange(Rows::kAspect);
  FillList(channels_, Rows::kChannels);
  FillList(method_, Rows::kMethod);
  FillList(mixBack_, Rows::kMixBack);
  SetNumberRange(Rows::kBlend);
  SetNumberRange(Rows::kEffectGain);
  SetNumberRange(Rows::kSourceGain);
  effect = blurEffect_ = static_cast<Blur*>(QueryEffect(kBlurObject));
  ConnectOverlay();
  ApplyEnableRule();
  return result;
}

void FullBlurPPG::ApplyEnableRule() {
  const bool enabled = mixBack_.Get() != 0;
  Enable(blend_, enabled);
  Enable(effectGain_, enabled);
  Enable(sourceGain_, enabled);
}

HRESULT FullBlurPPG::PropertyChanged(const GUID& property, const DSVariant* value) {
  const HRESULT result = CDSPropertyPage::PropertyChanged(property, value);
  if (result < 0 || IsSuspended()) return result;
  const Change change(*this, property, value);
  if (const auto method = ReadIfAffected(mixBack_); method) {
    mixBack_.value = *method;
    ApplyEnableRule();
  }
  return result;
}

void FullBlurPPG::Reset() {
  {
    const UndoBracket bracket(*this);
    SetDefault(blur_, Rows::kBlur);
    SetDefault(aspect_, Rows::kAspect);
    SetDefault(channels_, Rows::kChannels);
    SetDefault(method_, Rows::kMethod);
    SetDefault(mixBack_, Rows::kMixBack);
    SetDefault(blend_, Rows::kBlend);
    SetDefault(effectGain_, Rows::kEffectGain);
    SetDefault(sourceGain_, Rows::kSourceGain);
  }
  ApplyEnableRule();
}

}  // namespace vblur
