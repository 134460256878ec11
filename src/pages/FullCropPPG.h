// The page of the crop: its four sides, what lies beyond them, and the colour there.
#pragma once

#include "pages/ColourChip.h"
#include "pages/HvDsPPG.h"

namespace vblur {

class FullCropPPG : public CountedPage<FullCropPPG> {
 public:
  // The edge method that the lists show first, and that Reset writes.
  static constexpr auto kDefaultEdgeMethod =
      static_cast<std::int32_t>(PropertyOf(PropertyId::XEdgeMethod).defaultValue);
  static_assert(kDefaultEdgeMethod == PropertyOf(PropertyId::YEdgeMethod).defaultValue);

  FullCropPPG();

  CDSPPGControlMap* GetControlMap() override;
  HRESULT OnInitDialog() override;
  HRESULT PropertyChanged(const GUID& property, const DSVariant* value) override;
  HRESULT UpdateAnimatedControls(double time) override;

 private:
  // What the page says of its controls.
  struct Rows;

  ~FullCropPPG() override;

  void ReadChip() { chip_.ReadChip(); }
  void UpdateChip() { chip_.Update(); }
  void Reset();

  ValueControl<double> left_;
  ValueControl<double> right_;
  ValueControl<double> bottom_;
  ValueControl<double> top_;
  ValueControl<std::int32_t> xEdgeMethod_;
  ValueControl<std::int32_t> yEdgeMethod_;
  ColourChip chip_;
  ValueControl<bool> displayCropped_;
  // The dialog has no such control.
  ValueControl<bool> blankCropped_;
};

}  // namespace vblur
