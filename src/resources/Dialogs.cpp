#include "resources/Dialogs.h"

#include <array>
#include <string_view>

#include "platform/WindowStyles.h"
#include "properties/PropertyTable.h"
#include "resources/NumberText.h"
#include "resources/Numbers.h"
#include "resources/Strings.h"

namespace vblur::resources {
namespace {

// In dialog units.
struct Place {
  std::int32_t x;
  std::int32_t y;
  std::int32_t width;
  std::int32_t height;
};

constexpr std::uint32_t kShown = WS_CHILD | WS_VISIBLE;

constexpr ModuleControl Control(std::int32_t id, ModuleControlKind kind, std::string_view text, Place place,
                                std::uint32_t style) {
  return {id, kind, text, place.x, place.y, place.width, place.height, kShown | style};
}

constexpr ModuleControl Label(std::int32_t id, std::string_view text, Place place) {
  return Control(id, ModuleControlKind::Static, text, place, SS_LEFT);
}

constexpr ModuleControl Label(std::int32_t id, PropertyId property, Place place) {
  return Label(id, PropertyOf(property).shownName, place);
}

template <PropertyId kProperty>
constexpr ModuleControl Number(std::int32_t id, Place place) {
  return Control(id, ModuleControlKind::Static, kNumberText<kProperty>.View(), place, SS_LEFT | WS_TABSTOP);
}

constexpr ModuleControl ColourChip(std::int32_t id, Place place) {
  return Control(id, ModuleControlKind::Static, ";class=dsnewcolorchipctrl;auto=1", place, SS_LEFT | WS_TABSTOP);
}

constexpr ModuleControl List(std::int32_t id, Place place) {
  return Control(id, ModuleControlKind::List, "", place, CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP);
}

constexpr ModuleControl CheckBox(std::int32_t id, std::string_view text, Place place) {
  return Control(id, ModuleControlKind::CheckBox, text, place, BS_AUTOCHECKBOX | WS_TABSTOP);
}

constexpr ModuleControl Button(std::int32_t id, std::string_view text, Place place) {
  return Control(id, ModuleControlKind::PushButton, text, place, BS_PUSHBUTTON | WS_TABSTOP);
}

constexpr ModuleControl ResetButton(std::int32_t id) {
  return Button(id, kResetText, {73, 148, 44, 10});
}

constexpr ModuleControl Group(std::int32_t id, std::string_view text, Place place) {
  return Control(id, ModuleControlKind::Group, text, place, BS_GROUPBOX);
}

constexpr ModuleControl Picture(std::int32_t bitmap, Place place) {
  ModuleControl control = Control(ModuleControl::kNoId, ModuleControlKind::Picture, "", place, SS_BITMAP);
  control.bitmap = bitmap;
  return control;
}

constexpr std::array kFullBlurControls = {
    Label(full_blur::kMethodLabel, PropertyId::Method, {8, 5, 39, 8}),
    List(full_blur::kMethod, {8, 13, 82, 8}),
    Label(full_blur::kChannelsLabel, PropertyId::Channels, {100, 5, 39, 8}),
    List(full_blur::kChannels, {100, 13, 82, 8}),
    Label(full_blur::kBlurLabel, PropertyId::Blur, {17, 29, 39, 8}),
    Number<PropertyId::Blur>(full_blur::kBlur, {17, 38, 156, 12}),
    Label(full_blur::kAspectLabel, PropertyId::Aspect, {17, 53, 39, 8}),
    Number<PropertyId::Aspect>(full_blur::kAspect, {17, 62, 156, 12}),
    Group(ModuleControl::kNoId, "Blending", {6, 87, 177, 55}),
    List(full_blur::kMixBack, {10, 104, 82, 8}),
    Label(full_blur::kBlendLabel, PropertyId::Blend, {101, 94, 50, 8}),
    Number<PropertyId::Blend>(full_blur::kBlend, {98, 104, 82, 12}),
    Label(full_blur::kEffectGainLabel, PropertyId::EffectGain, {100, 118, 50, 8}),
    Number<PropertyId::EffectGain>(full_blur::kEffectGain, {97, 128, 82, 12}),
    Label(full_blur::kSourceGainLabel, PropertyId::SourceGain, {14, 118, 50, 8}),
    Number<PropertyId::SourceGain>(full_blur::kSourceGain, {11, 128, 82, 12}),
    ResetButton(full_blur::kReset),
};

constexpr std::array kTransitionBlurControls = {
    Label(transition_blur::kMethodLabel, PropertyId::Method, {7, 13, 39, 8}),
    List(transition_blur::kMethod, {7, 21, 82, 8}),
    Label(transition_blur::kChannelsLabel, PropertyId::Channels, {101, 13, 39, 8}),
    List(transition_blur::kChannels, {101, 21, 82, 8}),
    Label(transition_blur::kBlurLabel, PropertyId::Blur, {15, 46, 39, 8}),
    Number<PropertyId::Blur>(transition_blur::kBlur, {15, 55, 159, 12}),
    Label(transition_blur::kAspectLabel, PropertyId::Aspect, {15, 75, 39, 8}),
    Number<PropertyId::Aspect>(transition_blur::kAspect, {15, 84, 159, 12}),
    ResetButton(transition_blur::kReset),
};

// The page fills in the empty labels.
constexpr std::array kHelpControls = {
    CheckBox(help::kHideOverlayControls, PropertyOf(PropertyId::HideOverlayControls).shownName, {54, 132, 81, 10}),
    Group(help::kFrame, "", {4, 0, 181, 130}),
    Label(help::kText, "", {9, 4, 173, 82}),
    Button(help::kOnlineHelp, "Online Help", {62, 145, 66, 14}),
    Label(help::kVersion, "", {54, 92, 167, 8}),  // beyond the right edge
    Label(help::kProduct, "", {54, 100, 126, 8}),
    Label(help::kOwner, "", {54, 108, 126, 8}),
    Label(help::kRights, "", {54, 116, 126, 8}),
    Picture(bitmaps::kLogo, {9, 90, 39, 36}),
};

constexpr std::array kFullCropControls = {
    CheckBox(full_crop::kDisplayCropped, "Display Cropped Source", {49, 2, 92, 10}),
    Label(full_crop::kCropLeftLabel, PropertyId::CropLeft, {8, 14, 39, 8}),
    Number<PropertyId::CropLeft>(full_crop::kCropLeft, {8, 23, 82, 12}),
    Label(full_crop::kCropRightLabel, PropertyId::CropRight, {101, 14, 39, 8}),
    Number<PropertyId::CropRight>(full_crop::kCropRight, {101, 23, 82, 12}),
    Label(full_crop::kCropBottomLabel, PropertyId::CropBottom, {8, 36, 56, 8}),
    Number<PropertyId::CropBottom>(full_crop::kCropBottom, {8, 45, 82, 12}),
    Label(full_crop::kCropTopLabel, PropertyId::CropTop, {101, 36, 39, 8}),
    Number<PropertyId::CropTop>(full_crop::kCropTop, {101, 45, 82, 12}),
    Label(full_crop::kXEdgeMethodLabel, PropertyId::XEdgeMethod, {8, 58, 67, 8}),
    List(full_crop::kXEdgeMethod, {8, 67, 82, 8}),
    Label(full_crop::kYEdgeMethodLabel, PropertyId::YEdgeMethod, {101, 58, 67, 8}),
    List(full_crop::kYEdgeMethod, {101, 67, 82, 8}),
    Group(full_crop::kColourGroup, kCropColourText, {29, 84, 132, 62}),
    ColourChip(full_crop::kColourChip, {36, 107, 24, 23}),
    Label(full_crop::kRedLabel, "R", {150, 95, 8, 8}),
    Number<PropertyId::CropColourR>(full_crop::kRed, {65, 93, 82, 12}),
    Label(full_crop::kGreenLabel, "G", {150, 108, 8, 8}),
    Number<PropertyId::CropColourG>(full_crop::kGreen, {65, 106, 82, 12}),
    Label(full_crop::kBlueLabel, "B", {150, 121, 8, 8}),
    Number<PropertyId::CropColourB>(full_crop::kBlue, {65, 119, 82, 12}),
    Label(full_crop::kAlphaLabel, "A", {150, 134, 8, 8}),
    Number<PropertyId::CropColourA>(full_crop::kAlpha, {65, 132, 82, 12}),
    ResetButton(full_crop::kReset),
};

constexpr std::array kTransitionControls = {
    Label(transition::kEffectScalingLabel, PropertyId::EffectScaling, {40, 11, 92, 8}),
    List(transition::kEffectScaling, {40, 22, 110, 8}),
    Label(transition::kFinishFadingOutFirstClipLabel, PropertyId::FinishFadingOutFirstClip, {10, 43, 99, 8}),
    Number<PropertyId::FinishFadingOutFirstClip>(transition::kFinishFadingOutFirstClip, {10, 54, 170, 12}),
    Label(transition::kStartFadingInSecondClipLabel, PropertyId::StartFadingInSecondClip, {10, 75, 110, 8}),
    Number<PropertyId::StartFadingInSecondClip>(transition::kStartFadingInSecondClip, {10, 86, 170, 12}),
    Label(transition::kTransitionRampingLabel, PropertyId::TransitionRamping, {40, 107, 85, 8}),
    List(transition::kTransitionRamping, {40, 118, 110, 8}),
    ResetButton(transition::kReset),
};

// Hidden until its page is shown.
constexpr ModuleDialog Page(std::int32_t id, std::span<const ModuleControl> controls) {
  return {id, 190, 160, "Arial", 11, WS_CHILD | DS_CONTROL | DS_SETFONT, controls};
}

constexpr std::array kDialogs = {
    Page(kFullBlurDialog, kFullBlurControls),
    Page(kTransitionBlurDialog, kTransitionBlurControls),
    Page(kHelpDialog, kHelpControls),
    Page(kFullCropDialog, kFullCropControls),
    Page(kTransitionDialog, kTransitionControls),
};

}  // namespace

std::span<const ModuleDialog> Dialogs() {
  return kDialogs;
}

}  // namespace vblur::resources
