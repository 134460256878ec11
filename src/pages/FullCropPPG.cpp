#include "pages/FullCropPPG.h"

#include "pages/ControlMap.h"
#include "pages/ResetValues.h"
#include "properties/ClassIds.h"
#include "properties/PageNames.h"
#include "resources/Numbers.h"

namespace vblur {

namespace {

constexpr float DefaultOf(const ControlRow& row) {
  return static_cast<float>(row.Of().defaultValue);
}

}  // namespace

struct FullCropPPG::Rows {
  static constexpr ControlRow kDisplayCropped{resources::full_crop::kDisplayCropped, 0, PropertyId::DisplayCropped};
  static constexpr ControlRow kLeft{resources::full_crop::kCropLeft, resources::full_crop::kCropLeftLabel,
                                    PropertyId::CropLeft, control_flags::kAnimated};
  static constexpr ControlRow kRight{resources::full_crop::kCropRight, resources::full_crop::kCropRightLabel,
                                     PropertyId::CropRight, control_flags::kAnimated};
  static constexpr ControlRow kBottom{resources::full_crop::kCropBottom, resources::full_crop::kCropBottomLabel,
                                      PropertyId::CropBottom, control_flags::kAnimated};
  static constexpr ControlRow kTop{resources::full_crop::kCropTop, resources::full_crop::kCropTopLabel,
                                   PropertyId::CropTop, control_flags::kAnimated};
  static constexpr ControlRow kXEdgeMethod{resources::full_crop::kXEdgeMethod, resources::full_crop::kXEdgeMethodLabel,
                                           PropertyId::XEdgeMethod};
  static constexpr ControlRow kYEdgeMethod{resources::full_crop::kYEdgeMethod, resources::full_crop::kYEdgeMethodLabel,
                                           PropertyId::YEdgeMethod};
  static constexpr ControlRow kRed{resources::full_crop::kRed, resources::full_crop::kRedLabel, PropertyId::CropColourR,
                                   control_flags::kAnimated};
  static constexpr ControlRow kGreen{resources::full_crop::kGreen, resources::full_crop::kGreenLabel,
                                     PropertyId::CropColourG, control_flags::kAnimated};
  static constexpr ControlRow kBlue{resources::full_crop::kBlue, resources::full_crop::kBlueLabel,
                                    PropertyId::CropColourB, control_flags::kAnimated};
  static constexpr ControlRow kAlpha{resources::full_crop::kAlpha, resources::full_crop::kAlphaLabel,
                                     PropertyId::CropColourA, control_flags::kAnimated};
  static constexpr ControlRow kBlankCropped{resources::full_crop::kBlankCropped, 0, PropertyId::BlankCropped};
};

FullCropPPG::FullCropPPG()
    : CountedPage(resources::kFullCropDialog, resources::strings::kFullCropTitle, pages::kCrop.data()),
      left_(*this, Rows::kLeft),
      right_(*this, Rows::kRight),
      bottom_(*this, Rows::kBottom),
      top_(*this, Rows::kTop),
      xEdgeMethod_(*this, Rows::kXEdgeMethod),
      yEdgeMethod_(*this, Rows::kYEdgeMethod),
      chip_{this,
            resources::full_crop::kColourChip,
            resources::full_crop::kColourGroup,
            {*this, Rows::kRed},
            {*this, Rows::kGreen},
            {*this, Rows::kBlue},
            {*this, Rows::kAlpha},
            ColourChip::kHasAlpha},
      displayCropped_(*this, Rows::kDisplayCropped),
      blankCropped_(*this, Rows::kBlankCropped) {}

FullCropPPG::~FullCropPPG() {
  DisconnectEffect();
}

CDSPPGControlMap* FullCropPPG::GetControlMap() {
  using namespace control_map;
  constexpr auto kUpdateChip = &Run<&FullCropPPG::UpdateChip>;
  static constexpr CDSPPGControlMapEntry kEntries[] = {
      Control<&FullCropPPG::displayCropped_>(Rows::kDisplayCropped),
      Control<&FullCropPPG::left_>(Rows::kLeft),
      Control<&FullCropPPG::right_>(Rows::kRight),
      Control<&FullCropPPG::bottom_>(Rows::kBottom),
      Control<&FullCropPPG::top_>(Rows::kTop),
      Control<&FullCropPPG::xEdgeMethod_>(Rows::kXEdgeMethod),
      Control<&FullCropPPG::yEdgeMethod_>(Rows::kYEdgeMethod),
      Button(resources::full_crop::kColourChip, control_flags::kButton, resources::strings::kCropColourHint,
             &Run<&FullCropPPG::ReadChip>),
      ControlWithin<&FullCropPPG::chip_, &ColourChip::red>(Rows::kRed, kUpdateChip),
      ControlWithin<&FullCropPPG::chip_, &ColourChip::green>(Rows::kGreen, kUpdateChip),
      ControlWithin<&FullCropPPG::chip_, &ColourChip::blue>(Rows::kBlue, kUpdateChip),
      ControlWithin<&FullCropPPG::chip_, &ColourChip::alpha>(Rows::kAlpha, kUpdateChip),
      Button(resources::full_crop::kReset, control_flags::kButton, resources::strings::kFullCropResetHint,
             &Run<&FullCropPPG::Reset>),
      Control<&FullCropPPG::blankCropped_>(Rows::kBlankCropped),
      kEnd,
  };
  static CDSPPGControlMap map{&m_ControlMap, kName, kEntries};
  map.Initialize();
  return &map;
}

// Without the base's: the controls are as their dialog has them until the first notice.
HRESULT FullCropPPG::OnInitDialog() {
  for (const ControlRow& side : {Rows::kLeft, Rows::kRight, Rows::kBottom, Rows::kTop})
    SetNumberRange(side);
  FillList(xEdgeMethod_, Rows::kXEdgeMethod);
  FillList(yEdgeMethod_, Rows::kYEdgeMethod);
  for (const ControlRow& component : {Rows::kRed, Rows::kGreen, Rows::kBlue, Rows::kAlpha})
    SetNumberRange(component);
  effect = static_cast<HvDsEffect*>(QueryEffect(kDsEffectObject));
  ConnectOverlay();
  return kOk;
}

HRESULT FullCropPPG::PropertyChanged(const GUID& property, const DSVariant* value) {
  const HRESULT result = CDSPropertyPage::PropertyChanged(property, value);
  if (result < 0) return result;
  const Change change(*this, property, value);
  if (const auto colour = chip_.ReadIfAffected(); colour) chip_.Show((*colour)[0], (*colour)[1], (*colour)[2]);
  return result;
}

HRESULT FullCropPPG::UpdateAnimatedControls(double time) {
  const HRESULT result = CDSPropertyPage::UpdateAnimatedControls(time);
  UpdateChip();
  return result;
}

void FullCropPPG::Reset() {
  const UndoBracket bracket(*this);
  SetDefault(left_, Rows::kLeft);
  SetDefault(right_, Rows::kRight);
  SetDefault(bottom_, Rows::kBottom);
  SetDefault(top_, Rows::kTop);
  xEdgeMethod_.Set(kDefaultEdgeMethod);
  yEdgeMethod_.Set(kDefaultEdgeMethod);
  chip_.SetAll(DefaultOf(Rows::kRed), DefaultOf(Rows::kGreen), DefaultOf(Rows::kBlue), DefaultOf(Rows::kAlpha));
  SetDefault(displayCropped_, Rows::kDisplayCropped);
  SetDefault(blankCropped_, Rows::kBlankCropped);
}

}  // namespace vblur
