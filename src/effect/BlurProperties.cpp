#include <array>
#include <utility>

#include "effect/Blur.h"
#include "properties/ClassIds.h"

namespace vblur {

// Change flag: every property may have changed.
constexpr std::uint32_t kEverythingChanged = 32768;

void Blur::ResetBlurParameters() {
  blur_ = {};
  crop = {};
}

HRESULT Blur::SetDefaults() {
  if (const HRESULT result = CDSImageMIEffect::SetDefaults(); result < 0) return result;
  ResetBlurParameters();
  masks_ = {};
  transition = {};
  return OnPropertyChanged(GUID_ALL_PROPERTIES, nullptr, nullptr, nullptr, 0, kEverythingChanged);
}

void Blur::CopyParameters(const Blur& other) {
  blur_ = other.blur_;
  crop = other.crop;
}

void* Blur::MemberOf(PropertyId id) {
  switch (id) {
    case PropertyId::Blur: return &blur_.blur;
    case PropertyId::Aspect: return &blur_.aspect;
    case PropertyId::Channels: return &blur_.channels;
    case PropertyId::Method: return &blur_.method;
    case PropertyId::MixBack: return &blur_.mixBack;
    case PropertyId::Blend: return &blur_.blend;
    case PropertyId::EffectGain: return &blur_.effectGain;
    case PropertyId::SourceGain: return &blur_.sourceGain;
    case PropertyId::HideOverlayControls: return &blur_.hideOverlayControls;
    case PropertyId::MaskRed: return &masks_.red;
    case PropertyId::MaskGreen: return &masks_.green;
    case PropertyId::MaskBlue: return &masks_.blue;
    case PropertyId::MaskAlpha: return &masks_.alpha;
    case PropertyId::CropLeft: return &crop.left;
    case PropertyId::CropRight: return &crop.right;
    case PropertyId::CropBottom: return &crop.bottom;
    case PropertyId::CropTop: return &crop.top;
    case PropertyId::XEdgeMethod: return &crop.xEdgeMethod;
    case PropertyId::YEdgeMethod: return &crop.yEdgeMethod;
    case PropertyId::CropColourR: return &crop.colourR;
    case PropertyId::CropColourG: return &crop.colourG;
    case PropertyId::CropColourB: return &crop.colourB;
    case PropertyId::CropColourA: return &crop.colourA;
    case PropertyId::DisplayCropped: return &crop.displayCropped;
    case PropertyId::BlankCropped: return &crop.blankCropped;
    case PropertyId::FinishFadingOutFirstClip: return &transition.finishFadingOutFirstClip;
    case PropertyId::StartFadingInSecondClip: return &transition.startFadingInSecondClip;
    case PropertyId::TransitionRamping: return &transition.ramping;
    case PropertyId::EffectScaling: return &transition.scaling;
  }
  return nullptr;
}

template <PropertyId id>
void* Blur::LocateMember(CDSBasePropertyContainer& container) {
  return static_cast<Blur&>(container).MemberOf(id);
}

const CDSPropertiesMap& Blur::InitStaticPropertyMap() {
  static const auto entries = []<std::size_t... index>(std::index_sequence<index...>) {
    constexpr auto entry = [](const Property& property, CDSPropertiesMapEntry::Member member) {
      return CDSPropertiesMapEntry{
          {property.guid, Blur::module, kParamDefWord, static_cast<std::int32_t>(property.capability), property.type,
           property.nameString, property.nameString, property.hintString},
          member};
    };
    return std::array{entry(kProperties[index], &Blur::LocateMember<kProperties[index].id>)...};
  }
  (std::make_index_sequence<kProperties.size()>());
  static const CDSPropertiesMap map{&CDSImageEffect::m_PropertiesMap, entries};
  return map;
}

HRESULT Blur::GetStaticPropertyCount(std::int32_t* count) {
  if (count == nullptr) return kNullPointer;
  *count = static_cast<std::int32_t>(InitStaticPropertyMap().entries.size());
  return kOk;
}

HRESULT Blur::GetStaticPropertiesMap(const CDSPropertiesMap** map) {
  if (map == nullptr) return kNullPointer;
  *map = &InitStaticPropertyMap();
  return kOk;
}

double Blur::Evaluate(PropertyId id, double plainValue, double time) const {
  return GetValueDirect(PropertyOf(id).guid, plainValue, time);
}

}  // namespace vblur
