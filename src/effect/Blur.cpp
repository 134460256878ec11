#include "effect/Blur.h"

#include <algorithm>

#include "effect/CreateBlur.h"
#include "image/Arithmetic.h"
#include "image/HvThreads.h"

namespace vblur {
namespace {

const Property* FindProperty(const GUID& guid) {
  const auto found = std::find_if(kProperties.begin(), kProperties.end(),
                                  [&](const Property& property) { return property.guid == guid; });
  return found == kProperties.end() ? nullptr : &*found;
}

}  // namespace

std::unique_ptr<IDSImageEffect> CreateBlur() {
  return std::make_unique<Blur>();
}

void SetRenderThreads(std::int32_t count) {
  HvSetThreadCount(std::max(count, 1));
}

HRESULT Blur::SetDefaults() {
  blur_ = {};
  masks_ = {};
  crop = {};
  transition = {};
  return kOk;
}

Blur::Member Blur::MemberOf(PropertyId id) {
  switch (id) {
    case PropertyId::Blur: return {.number = &blur_.blur};
    case PropertyId::Aspect: return {.number = &blur_.aspect};
    case PropertyId::Channels: return {.whole = &blur_.channels};
    case PropertyId::Method: return {.whole = &blur_.method};
    case PropertyId::MixBack: return {.whole = &blur_.mixBack};
    case PropertyId::Blend: return {.number = &blur_.blend};
    case PropertyId::EffectGain: return {.number = &blur_.effectGain};
    case PropertyId::SourceGain: return {.number = &blur_.sourceGain};
    case PropertyId::HideOverlayControls: return {.whole = &blur_.hideOverlayControls};
    case PropertyId::MaskRed: return {.whole = &masks_.red};
    case PropertyId::MaskGreen: return {.whole = &masks_.green};
    case PropertyId::MaskBlue: return {.whole = &masks_.blue};
    case PropertyId::MaskAlpha: return {.whole = &masks_.alpha};
    case PropertyId::CropLeft: return {.number = &crop.left};
    case PropertyId::CropRight: return {.number = &crop.right};
    case PropertyId::CropBottom: return {.number = &crop.bottom};
    case PropertyId::CropTop: return {.number = &crop.top};
    case PropertyId::XEdgeMethod: return {.whole = &crop.xEdgeMethod};
    case PropertyId::YEdgeMethod: return {.whole = &crop.yEdgeMethod};
    case PropertyId::CropColourR: return {.number = &crop.colourR};
    case PropertyId::CropColourG: return {.number = &crop.colourG};
    case PropertyId::CropColourB: return {.number = &crop.colourB};
    case PropertyId::CropColourA: return {.number = &crop.colourA};
    case PropertyId::DisplayCropped: return {.whole = &crop.displayCropped};
    case PropertyId::BlankCropped: return {.whole = &crop.blankCropped};
    case PropertyId::FinishFadingOutFirstClip: return {.number = &transition.finishFadingOutFirstClip};
    case PropertyId::StartFadingInSecondClip: return {.number = &transition.startFadingInSecondClip};
    case PropertyId::TransitionRamping: return {.whole = &transition.ramping};
    case PropertyId::EffectScaling: return {.whole = &transition.scaling};
  }
  return {};
}

HRESULT Blur::PutProperty(const GUID& property, double value) {
  const Property* found = FindProperty(property);
  if (found == nullptr) return kWrongArgument;
  const Member member = MemberOf(found->id);
  if (member.number != nullptr) {
    *member.number = value;
  } else {
    *member.whole = truncToInt(value);
  }
  return kOk;
}

HRESULT Blur::GetProperty(const GUID& property, double& value) const {
  const Property* found = FindProperty(property);
  if (found == nullptr) return kWrongArgument;
  const Member member = const_cast<Blur*>(this)->MemberOf(found->id);
  value = member.number != nullptr ? *member.number : static_cast<double>(*member.whole);
  return kOk;
}

HRESULT Blur::IsFormatSupported(const GUID& format) const {
  return format == MFIF_RGBA_RAW_32 || format == MFIF_RGBA_S2_14 ? kOk : kFalse;
}

double Blur::Evaluate(PropertyId id, double plainValue, double time) const {
  return GetValueDirect(PropertyOf(id).guid, plainValue, time);
}

}  // namespace vblur
