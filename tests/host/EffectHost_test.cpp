#include "host/EffectHost.h"

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

const GUID& kBlur = PropertyOf(PropertyId::Blur).guid;
constexpr const char* kKeys[] = {kProjectUserSizeX, kProjectUserSizeY, kProjectWorldSizeX, kProjectWorldSizeY};

TEST(EffectHost, EvaluatesCurvesAndLeavesPlainValuesToTheEffect) {
  PropertyStore store;
  const EffectHost host(store, std::nullopt);
  double value = -1.0;
  EXPECT_FALSE(host.AnimatedValue(kBlur, 2.0, value));
  store.Set(kBlur, 33.0);
  EXPECT_FALSE(host.AnimatedValue(kBlur, 2.0, value));
  EXPECT_FALSE(host.AnimatedValue(GUID{}, 2.0, value));
  EXPECT_EQ(value, -1.0);
  store.Set(kBlur, Curve{{{0.0, 0.0}, {4.0, 8.0}}, Interpolation::Linear});
  EXPECT_TRUE(host.AnimatedValue(kBlur, 2.0, value));
  EXPECT_EQ(value, 4.0);
}

TEST(EffectHost, TellsTheProjectSizes) {
  const PropertyStore store;
  const EffectHost host(store, ProjectSizes{{720, 486}, {4, 3}});
  const double expected[] = {720, 486, 4, 3};
  for (std::size_t i = 0; i < std::size(kKeys); ++i) {
    double value = -1.0;
    EXPECT_EQ(host.ContentProperty(kKeys[i], value), kOk);
    EXPECT_EQ(value, expected[i]) << kKeys[i];
  }
}

TEST(EffectHost, FailsForUnreadableAndUnknownKeys) {
  const PropertyStore store;
  double value = -1.0;
  for (const char* key : kKeys)
    EXPECT_EQ(EffectHost(store, std::nullopt).ContentProperty(key, value), kFailed);
  const EffectHost host(store, ProjectSizes{{720, 486}, {4, 3}});
  EXPECT_EQ(host.ContentProperty("Project Frame Rate", value), kWrongArgument);
  EXPECT_EQ(host.ContentProperty(nullptr, value), kNullPointer);
  EXPECT_EQ(value, -1.0);
}

}  // namespace
}  // namespace vblur::host
