#include "overlay/HvTDsCrop.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "tests/overlay/ToolWorld.h"

namespace vblur {
namespace {

using test::kBlurId;
using test::kBottomId;
using test::kLeftId;
using test::kRightId;
using test::kTopId;
using Writes = std::vector<test::TestOperator::Write>;

constexpr GUID kStranger = MakeGuid("{00000000-0000-0000-0000-0000000000B1}");

class HvTDsCropOnATool : public testing::Test {
 protected:
  HvTDsCropOnATool() {
    crop_.SetParent(&world_.tool->ViewZero());
    crop_.BindProperties(kLeftId, kRightId, kBottomId, kTopId);
    world_.theOperator->values = {10.0, 0.0, 10.0, 90.0, 20.0, 80.0};
    world_.tool->AddDsObject(&crop_);
    world_.viewer.invalidations = 0;
  }

  HvBox Lines() const { return {crop_.X0(), crop_.X1(), crop_.Y0(), crop_.Y1()}; }
  void Drag(double fromX, double fromY, double toX, double toY) {
    world_.PenMove(fromX, fromY);
    world_.PenDown(fromX, fromY);
    world_.PenMove(toX, toY);
    world_.PenUp(toX, toY);
  }

  test::ToolWorld world_;
  HvTDsCrop crop_;
};

TEST_F(HvTDsCropOnATool, IsLimitedToTheFrame) {
  EXPECT_STREQ(crop_.Name(), "Crop Box");
  EXPECT_EQ(crop_.Limits(), (HvBox{0.0f, 400.0f, 0.0f, 200.0f}));
  EXPECT_EQ(Lines(), (HvBox{40.0f, 360.0f, 40.0f, 160.0f}));
}

TEST_F(HvTDsCropOnATool, WritesOneEdge) {
  Drag(40.0, 100.0, 60.0, 110.0);
  EXPECT_EQ(world_.theOperator->writes, (Writes{{kLeftId, 15.0}}));
  EXPECT_EQ(Lines(), (HvBox{60.0f, 360.0f, 40.0f, 160.0f}));
}

TEST_F(HvTDsCropOnATool, WritesTwoEdgesOfACorner) {
  Drag(360.0, 160.0, 300.0, 150.0);
  EXPECT_EQ(world_.theOperator->writes, (Writes{{kRightId, 75.0}, {kTopId, 75.0}}));
}

TEST_F(HvTDsCropOnATool, WritesLeftRightBottomTop) {
  Drag(40.0, 40.0, 80.0, 60.0);
  EXPECT_EQ(world_.theOperator->writes, (Writes{{kLeftId, 20.0}, {kBottomId, 30.0}}));
}

TEST_F(HvTDsCropOnATool, FollowsOneProperty) {
  world_.theOperator->PutValue(kTopId, DSVariant::Of(60.0));
  EXPECT_EQ(Lines(), (HvBox{40.0f, 360.0f, 40.0f, 120.0f}));
  EXPECT_EQ(world_.viewer.TakeInvalidations(), 1);
  world_.theOperator->PutValue(kBlurId, DSVariant::Of(60.0));
  EXPECT_EQ(world_.viewer.TakeInvalidations(), 0);
}

TEST_F(HvTDsCropOnATool, TakesOneValueForAllProperties) {
  const DSVariant value = DSVariant::Of(50.0);
  EXPECT_EQ(crop_.OnPropertyChange(GUID_ALL_PROPERTIES, &value), 1);
  EXPECT_EQ(Lines(), (HvBox{200.0f, 200.0f, 100.0f, 100.0f}));
  EXPECT_EQ(crop_.OnPropertyChange(GUID_ALL_PROPERTIES, nullptr), 1);
  EXPECT_EQ(Lines(), (HvBox{40.0f, 360.0f, 40.0f, 160.0f}));
  EXPECT_EQ(crop_.OnPropertyChange(kStranger, nullptr), 0);
  EXPECT_EQ(crop_.OnPropertyChange(kStranger, &value), 0);
}

TEST_F(HvTDsCropOnATool, ReadsAllFourOrNone) {
  crop_.BindProperties(kLeftId, kStranger, kBottomId, kTopId);
  world_.theOperator->values[2] = 30.0;
  crop_.Refresh();
  EXPECT_EQ(Lines(), (HvBox{40.0f, 360.0f, 40.0f, 160.0f}));
}

TEST_F(HvTDsCropOnATool, ComparesAnEmptySlotOnlyWhereAValueIsGiven) {
  crop_.BindProperties(kLeftId, GUID_NO_PROPERTY, kBottomId, GUID_NO_PROPERTY);
  world_.theOperator->values = {10.0, 0.0, 30.0, 70.0, 40.0, 60.0};
  const HvBox before = Lines();
  EXPECT_EQ(crop_.OnPropertyChange(GUID_NO_PROPERTY, nullptr), 0);
  crop_.Refresh();
  EXPECT_EQ(Lines(), before) << "all four or none";
  const DSVariant value = DSVariant::Of(50.0);
  EXPECT_EQ(crop_.OnPropertyChange(GUID_NO_PROPERTY, &value), 1);
  EXPECT_EQ(Lines(), (HvBox{40.0f, 200.0f, 40.0f, 100.0f}));
  EXPECT_EQ(crop_.OnPropertyChange(GUID_ALL_PROPERTIES, nullptr), 1);
  EXPECT_EQ(Lines(), (HvBox{120.0f, 200.0f, 80.0f, 100.0f})) << "those that have a property";
}

TEST_F(HvTDsCropOnATool, WritesNothingForAnEmptySlot) {
  crop_.BindProperties(GUID_NO_PROPERTY, kRightId, kBottomId, GUID_NO_PROPERTY);
  Drag(40.0, 160.0, 60.0, 150.0);
  EXPECT_TRUE(world_.theOperator->writes.empty());
  Drag(60.0, 40.0, 80.0, 50.0);
  EXPECT_EQ(world_.theOperator->writes, (Writes{{kBottomId, 25.0}}));
}

TEST_F(HvTDsCropOnATool, FollowsTheTime) {
  world_.theOperator->PutCurve(kLeftId, DSCurve{{{0.0, 0.0}, {10.0, 50.0}}});
  world_.tool->OnOnTimeChange(4.0);
  EXPECT_EQ(Lines(), (HvBox{80.0f, 360.0f, 40.0f, 160.0f}));
}

TEST_F(HvTDsCropOnATool, MovesWithItsLimitsAndLeavesTheProperties) {
  crop_.SetLimits(100.0f, 50.0f, 300.0f, 150.0f);
  crop_.Refresh();
  EXPECT_EQ(Lines(), (HvBox{120.0f, 280.0f, 70.0f, 130.0f}));
  EXPECT_TRUE(world_.theOperator->writes.empty());
}

TEST_F(HvTDsCropOnATool, DividesByLimitsOfNoExtentAndTheHostRefuses) {
  crop_.SetLimits(100.0f, 50.0f, 100.0f, 150.0f);
  crop_.Refresh();
  EXPECT_EQ(crop_.X0(), 100.0f);
  // The lower left corner: 0 / 0 for left, a finite value for bottom.
  Drag(100.0, 70.0, 100.0, 90.0);
  ASSERT_EQ(world_.theOperator->writes.size(), 2u);
  EXPECT_EQ(world_.theOperator->writes[0].first, kLeftId);
  EXPECT_TRUE(std::isnan(world_.theOperator->writes[0].second));
  EXPECT_EQ(world_.theOperator->writes[1], std::pair(kBottomId, 40.0));
  EXPECT_EQ(world_.theOperator->values[2], 10.0) << "the failed write is dropped";
  EXPECT_EQ(world_.theOperator->values[4], 40.0);
  EXPECT_FALSE(world_.tool->WriteAnimated(kLeftId, std::numeric_limits<double>::infinity()));
}

}  // namespace
}  // namespace vblur
