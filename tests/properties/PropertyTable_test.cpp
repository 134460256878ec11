#include "properties/PropertyTable.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

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
  EXPECT_TRUE(PropertyOf(PropertyId::CropColourB).IsAnimated());
  EXPECT_TRUE(PropertyOf(PropertyId::Blur).IsAnimated());
  EXPECT_FALSE(PropertyOf(PropertyId::FinishFadingOutFirstClip).IsAnimated());
  EXPECT_EQ(static_cast<int>(PropertyOf(PropertyId::HideOverlayControls).capability), 532);
}

}  // namespace
}  // namespace vblur
