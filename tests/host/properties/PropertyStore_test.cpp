#include "host/properties/PropertyStore.h"

#include <gtest/gtest.h>

#include "tests/support/host/FailureOf.h"

namespace vblur::host {
namespace {

const GUID& kBlurGuid = PropertyOf(PropertyId::Blur).guid;
const GUID& kChannelsGuid = PropertyOf(PropertyId::Channels).guid;

TEST(PropertyStore, FindsEveryPropertyOfTheTableByItsIdentity) {
  for (const Property& property : kProperties)
    EXPECT_EQ(FindProperty(property.guid), &property);
  EXPECT_EQ(FindProperty(GUID{}), nullptr);
}

TEST(PropertyStore, AnswersWithDefaultsUntilSomethingIsSet) {
  PropertyStore store;
  for (const Property& property : kProperties)
    EXPECT_EQ(store.ValueAt(property.guid, 3.0), property.defaultValue);
  store.Set(kBlurGuid, 24.5);
  EXPECT_EQ(store.ValueAt(kBlurGuid, 3.0), 24.5);
  EXPECT_EQ(store.ValueAt(kChannelsGuid, 3.0), 1.0);
}

TEST(PropertyStore, ForgetsAPropertyThatIsSetToItsDefault) {
  PropertyStore store;
  store.Set(kBlurGuid, 24.5);
  ASSERT_NE(store.Find(kBlurGuid), nullptr);
  store.Set(kBlurGuid, 10.0);
  EXPECT_EQ(store.Find(kBlurGuid), nullptr);
  EXPECT_EQ(store, PropertyStore());
}

TEST(PropertyStore, FollowsACurve) {
  PropertyStore store;
  store.Set(kBlurGuid, Curve{{{0.0, 0.0}, {10.0, 80.0}}, Interpolation::Linear});
  EXPECT_EQ(store.ValueAt(kBlurGuid, 5.0), 40.0);
  store.Set(kBlurGuid, 7.0);
  EXPECT_EQ(store.ValueAt(kBlurGuid, 5.0), 7.0);
}

TEST(PropertyStore, RefusesWhatAPropertyCannotHold) {
  PropertyStore store;
  EXPECT_EQ(UsageFailureOf([&] { store.Set(GUID{}, 1.0); }), "the effect has no property with this identity");
  EXPECT_EQ(UsageFailureOf([&] {
              store.Set(kChannelsGuid, Curve{{{0.0, 1.0}}, {}});
            }),
            "Channels: not an animated property, expected a value");
  EXPECT_EQ(UsageFailureOf([&] { store.Set(kBlurGuid, Curve{}); }), "Blur: expected at least one key");
  for (const double second : {1.0, 0.5}) {
    EXPECT_EQ(UsageFailureOf([&] {
                store.Set(kBlurGuid, Curve{{{1.0, 1.0}, {second, 2.0}}, {}});
              }),
              "Blur: expected keys in the order of time, each later than the one before");
  }
  EXPECT_EQ(UsageFailureOf([&] { store.ValueAt(GUID{}, 0.0); }), "the effect has no property with this identity");
  EXPECT_TRUE(store.Settings().empty());
}

}  // namespace
}  // namespace vblur::host
