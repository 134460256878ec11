// The help page: what the effect does, its version, the manual, and whether its controls show over the viewer.
#pragma once

#include "effect/Blur.h"
#include "pages/HvDsPPG.h"

namespace vblur {

class HelpPPG : public CountedPage<HelpPPG> {
 public:
  HelpPPG();

  CDSPPGControlMap* GetControlMap() override;
  HRESULT OnInitDialog() override;

 private:
  // What the page says of its controls.
  struct Rows;

  ~HelpPPG() override;

  void ShowText(std::int32_t controlId, std::int32_t stringId);
  // Nothing without a tool.
  void HideOverlay();
  void ShowManual();

  Blur* blurEffect_ = nullptr;
  // Belongs to the page: no change of it is stored or undone.
  ValueControl<bool> hide_;
};

}  // namespace vblur
