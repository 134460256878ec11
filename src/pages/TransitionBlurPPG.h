// The main page of the effect as a transition: without mixing back.
#pragma once

#include "effect/Blur.h"
#include "pages/HvDsPPG.h"

namespace vblur {

class TransitionBlurPPG : public CountedPage<TransitionBlurPPG> {
 public:
  TransitionBlurPPG();

  CDSPPGControlMap* GetControlMap() override;
  HRESULT OnInitDialog() override;

 private:
  // What the page says of its controls.
  struct Rows;

  ~TransitionBlurPPG() override;

  void Reset();

  Blur* blurEffect_ = nullptr;
  ValueControl<double> blur_;
  ValueControl<double> aspect_;
  ValueControl<std::int32_t> channels_;
  ValueControl<std::int32_t> method_;
};

}  // namespace vblur
