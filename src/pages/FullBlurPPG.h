// The main page of the effect: size, aspect, channels, method, and mixing back to the original.
#pragma once

#include "effect/Blur.h"
#include "pages/HvDsPPG.h"

namespace vblur {

class FullBlurPPG : public CountedPage<FullBlurPPG> {
 public:
  FullBlurPPG();

  CDSPPGControlMap* GetControlMap() override;
  HRESULT OnInitDialog() override;
  HRESULT PropertyChanged(const GUID& property, const DSVariant* value) override;

 private:
  // What the page says of its controls.
  struct Rows;

  ~FullBlurPPG() override;

  // Blend and gains take input exactly if there is a mix-back method.
  void ApplyEnableRule();
  void Reset();

  Blur* blurEffect_ = nullptr;
  ValueControl<double> blur_;
  ValueControl<double> aspect_;
  ValueControl<std::int32_t> channels_;
  ValueControl<std::int32_t> method_;
  ValueControl<std::int32_t> mixBack_;
  ValueControl<double> blend_;
  ValueControl<double> effectGain_;
  ValueControl<double> sourceGain_;
};

}  // namespace vblur
