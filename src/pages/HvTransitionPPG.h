// The page of a transition's own values: when clips fade, how it ramps and scales the effect.
#pragma once

#include "pages/HvDsPPG.h"

namespace vblur {

class HvTransitionPPG : public CountedPage<HvTransitionPPG> {
 public:
  HvTransitionPPG();

  CDSPPGControlMap* GetControlMap() override;
  HRESULT OnInitDialog() override;

 private:
  // What the page says of its controls.
  struct Rows;

  ~HvTransitionPPG() override;

  void Reset();

  ValueControl<double> finishFadingOutFirstClip_;
  ValueControl<double> startFadingInSecondClip_;
  ValueControl<std::int32_t> transitionRamping_;
  ValueControl<std::int32_t> effectScaling_;
};

}  // namespace vblur
