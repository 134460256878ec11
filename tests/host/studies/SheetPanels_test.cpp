// The panels of each sheet, compared with the property table.
#include <map>

#include <gtest/gtest.h>

#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Sheets.h"

namespace vblur::host {
namespace {

void ExpectInputAndEntries(SheetKind kind, PropertyId id) {
  const SheetPlan plan = PlanOf(kind);
  const auto entries = PropertyOf(id).entries;
  ASSERT_EQ(plan.panels.size(), entries.size() + 1);
  EXPECT_EQ(plan.panels[0].label, "Input");
  EXPECT_TRUE(plan.panels[0].isInput);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const SheetPanel& panel = plan.panels[i + 1];
    EXPECT_EQ(panel.label, entries[i]);
    EXPECT_FALSE(panel.isInput);
    EXPECT_EQ(ValueOf(panel, id), static_cast<double>(i));
  }
}

TEST(SheetPanels, EveryChannelChoice) {
  ExpectInputAndEntries(SheetKind::Channels, PropertyId::Channels);
  EXPECT_EQ(PlanOf(SheetKind::Channels).panels.size(), 12u);
}

TEST(SheetPanels, EveryMixBackMethod) {
  ExpectInputAndEntries(SheetKind::MixBack, PropertyId::MixBack);
  EXPECT_EQ(PlanOf(SheetKind::MixBack).panels.size(), 20u);
}

TEST(SheetPanels, EveryPairOfEdgeMethodsXAcrossAndYDown) {
  const SheetPlan plan = PlanOf(SheetKind::Edges);
  const auto entries = PropertyOf(PropertyId::XEdgeMethod).entries;
  ASSERT_EQ(plan.panels.size(), 16u);
  EXPECT_EQ(plan.columns, 4);
  for (std::size_t i = 0; i < 16; ++i) {
    const std::string x(entries[i % 4]);
    const std::string y(entries[i / 4]);
    EXPECT_EQ(plan.panels[i].label, std::string("X ").append(x).append(", Y ").append(y));
    EXPECT_EQ(ValueOf(plan.panels[i], PropertyId::XEdgeMethod), static_cast<double>(i % 4));
    const std::size_t row = i / 4;
    EXPECT_EQ(ValueOf(plan.panels[i], PropertyId::YEdgeMethod), static_cast<double>(row));
    EXPECT_GT(ValueOf(plan.panels[i], PropertyId::CropLeft), 0.0);
    EXPECT_LT(ValueOf(plan.panels[i], PropertyId::CropTop), 100.0);
    EXPECT_GT(ValueOf(plan.panels[i], PropertyId::CropColourR), 0.0);
  }
}

TEST(SheetPanels, SizesRiseWithTheirRadiusAndSigma) {
  const SheetPlan plan = PlanOf(SheetKind::Sizes);
  ASSERT_EQ(plan.panels.size(), 8u);
  double before = -1.0;
  for (const SheetPanel& panel : plan.panels) {
    const double size = ValueOf(panel, PropertyId::Blur);
    EXPECT_GT(size, before);
    before = size;
    EXPECT_EQ(panel.label.rfind("Blur ", 0), 0u);
    EXPECT_EQ(std::stod(panel.label.substr(5)), size);
  }
  EXPECT_EQ(plan.panels[2].note, "box radius 2.50, sigma 2.50, flat area 100.0 %");
}

TEST(SheetPanels, EveryRampFromTheFirstClipToTheSecond) {
  const SheetPlan plan = PlanOf(SheetKind::Ramps);
  const auto entries = PropertyOf(PropertyId::TransitionRamping).entries;
  ASSERT_EQ(plan.panels.size(), 36u);
  EXPECT_EQ(plan.use, EffectKind::Transition);
  for (std::size_t i = 0; i < 36; ++i) {
    const SheetPanel& panel = plan.panels[i];
    const std::size_t row = i / 9;
    EXPECT_EQ(ValueOf(panel, PropertyId::TransitionRamping), static_cast<double>(row));
    EXPECT_EQ(panel.time, plan.duration * static_cast<double>(i % 9) / 8.0);
    EXPECT_EQ(panel.label.rfind(std::string(entries[i / 9]) + "  ", 0), 0u) << panel.label;
  }
  EXPECT_EQ(plan.panels[10].label, "Ramp In  12.5 %");
}

TEST(SheetPanels, GivenPropertiesHoldForEveryPanel) {
  const SheetPlan plan = PlanOf(SheetKind::Edges, {{PropertyId::Blur, 10.0}, {PropertyId::CropLeft, 0.0}});
  for (const SheetPanel& panel : plan.panels) {
    EXPECT_EQ(ValueOf(panel, PropertyId::Blur), 10.0) << "also where it is the default";
    EXPECT_EQ(ValueOf(panel, PropertyId::CropLeft), 0.0);
    EXPECT_EQ(ValueOf(panel, PropertyId::CropRight), 70.0);
  }
  EXPECT_EQ(plan.settings.rfind("Blur 10 (panel pixels), Crop Right 70", 0), 0u) << plan.settings;
}

TEST(SheetPanels, WhatASheetVariesCannotBeSet) {
  const std::vector<std::pair<SheetKind, PropertyId>> pairs = {
      {SheetKind::Channels, PropertyId::Channels}, {SheetKind::MixBack, PropertyId::MixBack},
      {SheetKind::Edges, PropertyId::XEdgeMethod}, {SheetKind::Edges, PropertyId::YEdgeMethod},
      {SheetKind::Sizes, PropertyId::Blur},        {SheetKind::Ramps, PropertyId::TransitionRamping}};
  for (const auto& pair : pairs) {
    const std::map<PropertyId, double> settings = {{pair.second, PropertyOf(pair.second).defaultValue}};
    const std::string message = UsageFailureOf([&] { PlanOf(pair.first, settings); });
    EXPECT_NE(message.find("cannot be set, a sheet of "), std::string::npos) << message;
  }
  EXPECT_EQ(UsageFailureOf([] {
              PlanOf(SheetKind::MixBack, {{PropertyId::MixBack, 3.0}});
            }),
            "Mix Back: cannot be set, a sheet of mix-back goes through its values");
}

TEST(SheetPanels, AlphaIsShownAsAsked) {
  SheetRequest request = RequestOf(SheetKind::Channels);
  EXPECT_TRUE(PlanSheet(request, PlainFacts).showsAlpha);
  EXPECT_FALSE(PlanOf(SheetKind::MixBack).showsAlpha);
  request.showsAlpha = false;
  EXPECT_FALSE(PlanSheet(request, PlainFacts).showsAlpha);
}

}  // namespace
}  // namespace vblur::host
