#include "host/EffectSetup.h"

#include <map>

#include <gtest/gtest.h>

#include "platform/CDSImageMIEffect.h"
#include "tests/host/FailureOf.h"

namespace vblur::host {
namespace {

// Keeps what is put on it, and refuses one property when told to.
class RecordingEffect : public IDSImageEffect {
 public:
  void SetOutput(IDSImage*) override {}
  void SetInput(IDSImage*) override {}
  void SetInput2(IDSImage*) override {}
  void SetPixelMask(IDSImage*, std::int32_t, std::int32_t) override {}
  void SetROI(std::int32_t, std::int32_t, std::int32_t, std::int32_t) override {}
  void ClearROI() override {}
  void SetField(std::int32_t) override {}
  void SetDuration(double) override {}
  void SetCoordMan(IDSCoordMan*) override {}
  void SetExecuteContext(IDSExecuteContext*) override {}
  void SetEffectHost(IDSEffectHost*) override {}
  void SetEffectKind(std::int32_t) override {}
  HRESULT PutProperty(const GUID& property, double value) override {
    if (property == refused) return kWrongArgument;
    values[property] = value;
    return kOk;
  }
  HRESULT GetProperty(const GUID&, double&) const override { return kFailed; }
  HRESULT IsFormatSupported(const GUID&) const override { return kFalse; }
  HRESULT RenderFrame(double) override { return kOk; }

  std::map<GUID, double> values;
  GUID refused;
};

TEST(EffectSetup, PutsEveryPropertyOfTheTable) {
  PropertyStore store;
  const GUID& blur = PropertyOf(PropertyId::Blur).guid;
  const GUID& channels = PropertyOf(PropertyId::Channels).guid;
  store.Set(blur, Curve{{{0.0, 70.0}}, Interpolation::Hold});
  store.Set(channels, 7.0);
  RecordingEffect effect;
  ApplyProperties(store, effect);
  ASSERT_EQ(effect.values.size(), kProperties.size());
  for (const Property& property : kProperties) {
    const double expected = property.guid == channels ? 7.0 : property.defaultValue;
    EXPECT_EQ(effect.values.at(property.guid), expected) << property.name;
  }
}

TEST(EffectSetup, ReplacesWhatAnEarlierJobHasPut) {
  RecordingEffect effect;
  PropertyStore store;
  store.Set(PropertyOf(PropertyId::Blur).guid, 99.0);
  ApplyProperties(store, effect);
  ApplyProperties(PropertyStore(), effect);
  EXPECT_EQ(effect.values.at(PropertyOf(PropertyId::Blur).guid), 10.0);
}

TEST(EffectSetup, SaysWhichPropertyTheEffectRefuses) {
  RecordingEffect effect;
  effect.refused = PropertyOf(PropertyId::EffectGain).guid;
  EXPECT_EQ(UsageFailureOf([&] { ApplyProperties(PropertyStore(), effect); }),
            "Effect Gain: the effect does not take this property");
}

}  // namespace
}  // namespace vblur::host
