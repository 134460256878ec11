// Property values, the static property map, and defaults.
#include "effect/Parameters.h"

#include <iterator>
#include <vector>

#include <gtest/gtest.h>

#include "tests/effect/EffectBench.h"

namespace vblur {
namespace {

double ValueOf(IDSProperties& properties, PropertyId id) {
  DSVariant value;
  EXPECT_EQ(properties.GetValue(PropertyOf(id).guid, &value), kOk);
  return value.AsNumber();
}

TEST(Parameters, ANewEffectHasTheDefaults) {
  const auto effect = NewBlur();
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
  const auto effect = NewBlur();
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
  const auto effect = NewBlur();
  effect->PutValue(PropertyOf(PropertyId::Channels).guid, DSVariant::Of(6.9));
  EXPECT_EQ(ValueOf(*effect, PropertyId::Channels), 6.0);
}

TEST(Parameters, AnUnknownPropertyIsRefused) {
  const auto effect = NewBlur();
  DSVariant value = DSVariant::Of(7.0);
  EXPECT_EQ(effect->PutValue(GUID{}, DSVariant::Of(1.0)), kWrongArgument);
  EXPECT_EQ(effect->GetValue(GUID{}, &value), kWrongArgument);
  EXPECT_EQ(value.AsNumber(), 7.0);
}

// A row of the map. Types: 5 float64, 3 int32, 11 boolean. Capabilities: 5 animated, 4 and 532 plain.
struct MapRow {
  GUID id;
  int type;
  std::int32_t capability;
  std::int32_t name;
  std::int32_t hint;
};
constexpr MapRow kMapRows[] = {
    {MakeGuid("{9D2E3005-AE89-11D5-9414-0800690F2F3F}"), 5, 5, 1000, 1001},
    {MakeGuid("{9D2E3006-AE89-11D5-9414-0800690F2F3F}"), 5, 5, 1002, 1003},
    {MakeGuid("{9D2E3007-AE89-11D5-9414-0800690F2F3F}"), 3, 4, 1004, 1005},
    {MakeGuid("{9D2E3008-AE89-11D5-9414-0800690F2F3F}"), 3, 4, 1017, 1018},
    {MakeGuid("{9D2E3009-AE89-11D5-9414-0800690F2F3F}"), 3, 4, 1021, 1022},
    {MakeGuid("{9D2E300A-AE89-11D5-9414-0800690F2F3F}"), 5, 5, 1042, 1043},
    {MakeGuid("{9D2E300B-AE89-11D5-9414-0800690F2F3F}"), 5, 5, 1044, 1045},
    {MakeGuid("{9D2E300C-AE89-11D5-9414-0800690F2F3F}"), 5, 5, 1046, 1047},
    {MakeGuid("{9D2E300D-AE89-11D5-9414-0800690F2F3F}"), 11, 532, 1048, 1049},
    {MakeGuid("{A9962F51-7962-11D0-8AF7-00A024EE5780}"), 3, 4, 1061, 1065},
    {MakeGuid("{A9962F52-7962-11D0-8AF7-00A024EE5780}"), 3, 4, 1062, 1066},
    {MakeGuid("{A9962F53-7962-11D0-8AF7-00A024EE5780}"), 3, 4, 1063, 1067},
    {MakeGuid("{D5794982-786C-11D0-8AF5-00A024EE5780}"), 3, 4, 1064, 1068},
    {MakeGuid("{F2A92C64-2302-11D3-AB91-0000E8D8077F}"), 5, 5, 5000, 5001},
    {MakeGuid("{F2A92C65-2302-11D3-AB91-0000E8D8077F}"), 5, 5, 5002, 5003},
    {MakeGuid("{F2A92C66-2302-11D3-AB91-0000E8D8077F}"), 5, 5, 5004, 5005},
    {MakeGuid("{F2A92C67-2302-11D3-AB91-0000E8D8077F}"), 5, 5, 5006, 5007},
    {MakeGuid("{F2A92C68-2302-11D3-AB91-0000E8D8077F}"), 3, 4, 5008, 5009},
    {MakeGuid("{F2A92C69-2302-11D3-AB91-0000E8D8077F}"), 3, 4, 5014, 5015},
    {MakeGuid("{F2A92C6B-2302-11D3-AB91-0000E8D8077F}"), 5, 5, 5022, 5023},
    {MakeGuid("{F2A92C6C-2302-11D3-AB91-0000E8D8077F}"), 5, 5, 5024, 5025},
    {MakeGuid("{F2A92C6D-2302-11D3-AB91-0000E8D8077F}"), 5, 5, 5026, 5027},
    {MakeGuid("{F2A92C6E-2302-11D3-AB91-0000E8D8077F}"), 5, 5, 5028, 5029},
    {MakeGuid("{F2A92C6F-2302-11D3-AB91-0000E8D8077F}"), 11, 4, 5030, 5031},
    {MakeGuid("{F2A92C70-2302-11D3-AB91-0000E8D8077F}"), 11, 4, 5032, 5033},
    {MakeGuid("{9D2E3066-AE89-11D5-9414-0800690F2F3F}"), 5, 4, 5500, 5501},
    {MakeGuid("{9D2E3067-AE89-11D5-9414-0800690F2F3F}"), 5, 4, 5502, 5503},
    {MakeGuid("{9D2E3068-AE89-11D5-9414-0800690F2F3F}"), 3, 4, 5504, 5505},
    {MakeGuid("{9D2E3069-AE89-11D5-9414-0800690F2F3F}"), 3, 4, 5510, 5511},
};

TEST(Parameters, TheMapListsThemWithTheirTexts) {
  const auto effect = NewBlur();
  std::int32_t count = 0;
  EXPECT_EQ(effect->GetStaticPropertyCount(&count), kOk);
  EXPECT_EQ(count, 29);
  EXPECT_EQ(effect->GetStaticPropertyCount(nullptr), kNullPointer);
  EXPECT_EQ(effect->GetStaticPropertiesMap(nullptr), kNullPointer);
  const CDSPropertiesMap* map = nullptr;
  ASSERT_EQ(effect->GetStaticPropertiesMap(&map), kOk);
  EXPECT_EQ(map->parent, &CDSImageEffect::m_PropertiesMap);
  ASSERT_EQ(map->entries.size(), std::size(kMapRows));
  for (std::size_t i = 0; i < std::size(kMapRows); ++i) {
    const CDSPropertiesMapEntry& entry = map->entries[i];
    EXPECT_EQ(entry.param.id, kMapRows[i].id) << i;
    EXPECT_EQ(static_cast<int>(entry.param.type), kMapRows[i].type) << i;
    EXPECT_EQ(entry.param.capability, kMapRows[i].capability) << i;
    EXPECT_EQ(entry.param.word, 32768) << i;
    EXPECT_EQ(entry.param.name, kMapRows[i].name) << i;
    EXPECT_EQ(entry.param.shortName, kMapRows[i].name) << i;
    EXPECT_EQ(entry.param.hint, kMapRows[i].hint) << i;
    EXPECT_EQ(entry.word, 0xFFFFFFFFu) << i;
  }
}

TEST(Parameters, TheMapIsMadeOnce) {
  const CDSPropertiesMap* maps[2] = {nullptr, nullptr};
  for (const CDSPropertiesMap*& map : maps)
    EXPECT_EQ(NewBlur()->GetStaticPropertiesMap(&map), kOk);
  EXPECT_EQ(maps[0], maps[1]);
}

// Records change notices.
struct Notices : IDSPropertyNotify {
  struct Notice {
    GUID property;
    bool hasValue;
    std::uint32_t flags;

    friend bool operator==(const Notice&, const Notice&) = default;
  };

  void OnPropertyChanged(const GUID& property, const DSVariant* value, std::uint32_t flags) override {
    all.push_back({property, value != nullptr, flags});
  }

  std::vector<Notice> all;
};

using DefaultsCall = HRESULT (*)(vblur::Blur&);

TEST(Parameters, DefaultsAreNotifiedOnceWithTheirOwnFlag) {
  constexpr DefaultsCall kCalls[] = {[](vblur::Blur& effect) { return effect.SetDefaults(); },
                                     [](vblur::Blur& effect) { return effect.Init(); }};
  for (const DefaultsCall call : kCalls) {
    const auto effect = NewBlur();
    for (const Property& property : kProperties) {
      effect->PutValue(property.guid, DSVariant::Of(77.0));
      if (property.IsAnimated()) effect->PutCurve(property.guid, host::Curve{{{0.0, 5.0}}, {}});
    }
    Notices notices;
    effect->Advise(&notices);
    EXPECT_EQ(call(*effect), kOk);
    EXPECT_EQ(notices.all,
              (std::vector<Notices::Notice>{{MakeGuid("{5B192010-2C0D-11D0-82AB-00A0243F1013}"), false, 32768}}));
    effect->Unadvise(&notices);
    for (const Property& property : kProperties) {
      EXPECT_EQ(ValueOf(*effect, property.id), property.defaultValue) << property.name;
      const DSCurve* curve = nullptr;
      EXPECT_EQ(effect->GetCurve(property.guid, &curve), kFalse) << property.name;
    }
  }
}

}  // namespace
}  // namespace vblur
