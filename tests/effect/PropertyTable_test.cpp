#include "effect/PropertyTable.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

#include "tests/effect/EffectBench.h"

namespace vblur {
namespace {

TEST(PropertyTable, NamesAndGuidsAreUnique) {
  std::set<GUID> guids;
  std::set<std::string_view> names;
  for (const Property& property : kProperties) {
    EXPECT_TRUE(guids.insert(property.guid).second) << property.name;
    EXPECT_TRUE(names.insert(property.name).second) << property.name;
    EXPECT_FALSE(property.hint.empty()) << property.name;
    EXPECT_GE(property.defaultValue, property.minimum) << property.name;
    EXPECT_LE(property.defaultValue, property.maximum) << property.name;
  }
}

TEST(PropertyTable, ListsHaveTheirEntries) {
  EXPECT_EQ(PropertyOf(PropertyId::Channels).entries.size(), 11u);
  EXPECT_EQ(PropertyOf(PropertyId::Channels).entries[8], "Chroma");
  EXPECT_EQ(PropertyOf(PropertyId::MixBack).entries.size(), 19u);
  EXPECT_EQ(PropertyOf(PropertyId::MixBack).entries[18], "HardLight");
  EXPECT_EQ(PropertyOf(PropertyId::XEdgeMethod).entries[3], "Wrap");
  EXPECT_EQ(PropertyOf(PropertyId::TransitionRamping).entries[3], "Ramp In and Out");
  EXPECT_EQ(PropertyOf(PropertyId::EffectScaling).entries[2], "Cross Fade Effect");
}

TEST(PropertyTable, FractionalCropMayBeAnimatedFadePointsMayNot) {
  EXPECT_TRUE(PropertyOf(PropertyId::CropColourB).isAnimated());
  EXPECT_TRUE(PropertyOf(PropertyId::Blur).isAnimated());
  EXPECT_FALSE(PropertyOf(PropertyId::FinishFadingOutFirstClip).isAnimated());
  EXPECT_EQ(static_cast<int>(PropertyOf(PropertyId::HideOverlayControls).capability), 532);
}

double ValueOf(IDSProperties& properties, PropertyId id) {
  DSVariant value;
  EXPECT_EQ(properties.GetValue(PropertyOf(id).guid, &value), kOk);
  return value.asNumber();
}

TEST(Parameters, ANewEffectHasTheDefaults) {
  const auto effect = ComPtr<vblur::Blur>::Own(new vblur::Blur());
  using enum PropertyId;
  EXPECT_EQ(ValueOf(*effect, PropertyId::Blur), 10.0);
  EXPECT_EQ(ValueOf(*effect, Aspect), 0.0);
  EXPECT_EQ(ValueOf(*effect, Channels), 1.0);
  EXPECT_EQ(ValueOf(*effect, Method), 0.0);
  EXPECT_EQ(ValueOf(*effect, MixBack), 0.0);
  EXPECT_EQ(ValueOf(*effect, Blend), 50.0);
  EXPECT_EQ(ValueOf(*effect, EffectGain), 100.0);
  EXPECT_EQ(ValueOf(*effect, SourceGain), 100.0);
  EXPECT_EQ(ValueOf(*effect, HideOverlayControls), 0.0);
  for (const PropertyId id : {MaskRed, MaskGreen, MaskBlue, MaskAlpha})
    EXPECT_EQ(ValueOf(*effect, id), 1.0);
  for (const PropertyId id : {CropLeft, CropBottom, CropColourR, CropColourG, CropColourB, CropColourA}) {
    EXPECT_EQ(ValueOf(*effect, id), 0.0);
  }
  for (const PropertyId id : {CropRight, CropTop})
    EXPECT_EQ(ValueOf(*effect, id), 100.0);
  for (const PropertyId id : {XEdgeMethod, YEdgeMethod})
    EXPECT_EQ(ValueOf(*effect, id), 2.0);
  for (const PropertyId id : {DisplayCropped, BlankCropped})
    EXPECT_EQ(ValueOf(*effect, id), 0.0);
  EXPECT_EQ(ValueOf(*effect, FinishFadingOutFirstClip), 100.0);
  EXPECT_EQ(ValueOf(*effect, StartFadingInSecondClip), 0.0);
  EXPECT_EQ(ValueOf(*effect, TransitionRamping), 3.0);
  EXPECT_EQ(ValueOf(*effect, EffectScaling), 1.0);
}

TEST(Parameters, EveryPropertyHoldsWhatIsPut) {
  const auto effect = ComPtr<vblur::Blur>::Own(new vblur::Blur());
  double value = 40.0;
  for (const Property& property : kProperties) {
    EXPECT_EQ(effect->PutValue(property.guid, DSVariant::Of(value)), kOk) << property.name;
    value += 1.0;
  }
  value = 40.0;
  for (const Property& property : kProperties) {
    EXPECT_EQ(ValueOf(*effect, property.id), value) << property.name;
    value += 1.0;
  }
}

TEST(Parameters, WholePropertiesTruncate) {
  const auto effect = ComPtr<vblur::Blur>::Own(new vblur::Blur());
  effect->PutValue(PropertyOf(PropertyId::Channels).guid, DSVariant::Of(6.9));
  EXPECT_EQ(ValueOf(*effect, PropertyId::Channels), 6.0);
}

TEST(Parameters, AnUnknownPropertyIsRefused) {
  const auto effect = ComPtr<vblur::Blur>::Own(new vblur::Blur());
  DSVariant value = DSVariant::Of(7.0);
  EXPECT_EQ(effect->PutValue(GUID{}, DSVariant::Of(1.0)), kWrongArgument);
  EXPECT_EQ(effect->GetValue(GUID{}, &value), kWrongArgument);
  EXPECT_EQ(value.asNumber(), 7.0);
}

}  // namespace
}  // namespace vblur
