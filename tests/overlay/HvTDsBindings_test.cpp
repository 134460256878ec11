// The bindings of circle and crop box between widgets and properties.
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "overlay/HvTDsCircle.h"
#include "overlay/HvTDsCrop.h"
#include "tests/overlay/ToolWorld.h"

namespace vblur {
namespace {

using test::kAspectId;
using test::kBlurId;
using test::kBottomId;
using test::kLeftId;
using test::kRightId;
using test::kTopId;
using Writes = std::vector<test::TestOperator::Write>;

constexpr GUID kStranger = MakeGuid("{00000000-0000-0000-0000-0000000000B1}");

TEST(AspectToDraw, IsOneOverWhatIsLeftAboveZeroAndWhatIsLeftBelow) {
  EXPECT_EQ(AspectToDraw(0.0), 1.0f);
  EXPECT_EQ(AspectToDraw(0.5), 2.0f);
  EXPECT_EQ(AspectToDraw(1.0), std::numeric_limits<float>::infinity());
  EXPECT_EQ(AspectToDraw(7.0), std::numeric_limits<float>::infinity());
  EXPECT_EQ(AspectToDraw(-0.25), 0.75f);
  EXPECT_EQ(AspectToDraw(-1.0), 0.0f);
  EXPECT_EQ(AspectToDraw(-7.0), 0.0f);
}

class HvTDsCircleTest : public testing::Test {
 protected:
  HvTDsCircleTest() {
    circle_.SetParent(&world_.tool->frameCentre());
    circle_.BindProperties(kBlurId, kAspectId);
    world_.theOperator->values[0] = 50.0;
    world_.tool->AddDsObject(&circle_);
    world_.viewer.invalidations = 0;
  }

  test::ToolWorld world_;
  HvTDsCircle circle_;
};

TEST_F(HvTDsCircleTest, IsNamedAndStartsAtAHundred) {
  HvTDsCircle fresh;
  EXPECT_STREQ(fresh.name(), "Circle");
  EXPECT_EQ(fresh.radius(), 100.0f);
  EXPECT_EQ(fresh.tool(), nullptr);
  fresh.Commit();
  fresh.Refresh();
  EXPECT_EQ(fresh.OnPropertyChange(kBlurId, nullptr), 0);
  EXPECT_EQ(fresh.radius(), 100.0f) << "without a tool nothing is read";
}

TEST_F(HvTDsCircleTest, ReadsWhenItIsTakenOn) {
  EXPECT_EQ(circle_.radius(), 50.0f);
  EXPECT_EQ(circle_.aspect(), 1.0f);
}

TEST_F(HvTDsCircleTest, WritesOnceWhateverTheNumberOfMoves) {
  world_.PenMove(250.0, 100.0);
  world_.PenDown(250.0, 100.0);
  for (int x = 251; x < 300; ++x)
    world_.PenMove(x, 100.0);
  EXPECT_EQ(circle_.radius(), 99.0f);
  EXPECT_TRUE(world_.theOperator->writes.empty());
  world_.PenUp(299.0, 100.0);
  EXPECT_EQ(world_.theOperator->writes, (Writes{{kBlurId, 99.0}}));
}

TEST_F(HvTDsCircleTest, WritesItsRadiusOnAReleaseWithoutMovement) {
  world_.PenDown(250.0, 100.0);
  world_.PenUp(250.0, 100.0);
  EXPECT_EQ(world_.theOperator->writes, (Writes{{kBlurId, 50.0}}));
}

TEST_F(HvTDsCircleTest, NeverWritesTheAspect) {
  world_.theOperator->PutValue(kAspectId, DSVariant::Of(50.0));
  world_.theOperator->writes.clear();
  world_.PenDown(250.0, 100.0);
  world_.PenMove(280.0, 100.0);
  world_.PenUp(280.0, 100.0);
  EXPECT_EQ(world_.theOperator->writes, (Writes{{kBlurId, 80.0}}));
}

TEST_F(HvTDsCircleTest, FollowsItsProperties) {
  world_.theOperator->PutValue(kBlurId, DSVariant::Of(33.5));
  EXPECT_EQ(circle_.radius(), 33.5f);
  EXPECT_EQ(world_.viewer.TakeInvalidations(), 1);
  world_.theOperator->PutValue(kAspectId, DSVariant::Of(-50.0));
  EXPECT_EQ(circle_.aspect(), 0.5f);
  EXPECT_EQ(circle_.size(), (HvPoint{32.0f, 66.0f})) << "half the width, truncated";
  world_.theOperator->PutValue(kAspectId, DSVariant::Of(50.0));
  EXPECT_EQ(circle_.size(), (HvPoint{66.0f, 32.0f}));
  world_.theOperator->PutValue(kAspectId, DSVariant::Of(-100.0));
  EXPECT_EQ(circle_.size(), (HvPoint{0.0f, 66.0f}));
  world_.theOperator->PutValue(kAspectId, DSVariant::Of(100.0));
  EXPECT_EQ(circle_.size(), (HvPoint{66.0f, 0.0f}));
}

TEST_F(HvTDsCircleTest, IgnoresOtherProperties) {
  const DSVariant value = DSVariant::Of(7.0);
  EXPECT_EQ(circle_.OnPropertyChange(kLeftId, &value), 0);
  EXPECT_EQ(circle_.OnPropertyChange(kLeftId, nullptr), 0);
  EXPECT_EQ(circle_.radius(), 50.0f);
}

TEST_F(HvTDsCircleTest, TakesAValueForAllProperties) {
  const DSVariant value = DSVariant::Of(25.0);
  EXPECT_EQ(circle_.OnPropertyChange(GUID_ALL_PROPERTIES, &value), 1);
  EXPECT_EQ(circle_.radius(), 25.0f);
  EXPECT_FLOAT_EQ(circle_.aspect(), 1.0f / 0.75f);
}

TEST_F(HvTDsCircleTest, ReadsWhatAChangeWithoutAValueConcerns) {
  world_.theOperator->values = {20.0, 50.0, 0.0, 100.0, 0.0, 100.0};
  EXPECT_EQ(circle_.OnPropertyChange(kBlurId, nullptr), 1);
  EXPECT_EQ(circle_.radius(), 20.0f);
  EXPECT_EQ(circle_.aspect(), 1.0f);
  EXPECT_EQ(circle_.OnPropertyChange(GUID_ALL_PROPERTIES, nullptr), 1);
  EXPECT_EQ(circle_.aspect(), 2.0f);
}

TEST_F(HvTDsCircleTest, ComparesAnEmptySlotOnlyWhereAValueIsGiven) {
  circle_.BindProperties(GUID_NO_PROPERTY, GUID_NO_PROPERTY);
  const DSVariant value = DSVariant::Of(7.0);
  EXPECT_EQ(circle_.OnPropertyChange(GUID_NO_PROPERTY, nullptr), 0);
  EXPECT_EQ(circle_.radius(), 50.0f);
  EXPECT_EQ(circle_.OnPropertyChange(GUID_NO_PROPERTY, &value), 1);
  EXPECT_EQ(circle_.radius(), 7.0f);
}

TEST_F(HvTDsCircleTest, FollowsTheTime) {
  world_.theOperator->PutCurve(kBlurId, DSCurve{{{0.0, 10.0}, {10.0, 110.0}}});
  world_.tool->OnOnTimeChange(5.0);
  EXPECT_EQ(circle_.radius(), 60.0f);
  world_.tool->OnOnTimeChange(10.0);
  EXPECT_EQ(circle_.radius(), 110.0f);
}

TEST_F(HvTDsCircleTest, SetsAKeyAtTheViewersTime) {
  world_.theOperator->PutCurve(kBlurId, DSCurve{{{0.0, 50.0}, {10.0, 50.0}}});
  world_.viewer.time = 4.0;
  world_.PenDown(250.0, 100.0);
  world_.PenMove(270.0, 100.0);
  world_.PenUp(270.0, 100.0);
  double value = 0.0;
  EXPECT_EQ(world_.theOperator->GetValueAt(kBlurId, 4.0, &value), kOk);
  EXPECT_EQ(value, 70.0);
  EXPECT_EQ(world_.theOperator->GetValueAt(kBlurId, 10.0, &value), kOk);
  EXPECT_EQ(value, 50.0);
}

TEST_F(HvTDsCircleTest, StaysAsItIsWhileTheToolIsNotLinked) {
  world_.tool->OnUnlinkFromOperator();
  circle_.Refresh();
  circle_.Commit();
  EXPECT_EQ(circle_.radius(), 50.0f);
  EXPECT_TRUE(world_.theOperator->writes.empty());
}

TEST_F(HvTDsCircleTest, ObeysItsOwnSenderAlone) {
  HvMessageSender stranger;
  const HvMessage end(kInteractionEnds);
  circle_.HandleMessage(end, &stranger);
  circle_.HandleMessage(end, nullptr);
  circle_.HandleMessage(HvMessage(kInteractionBegins), &circle_);
  circle_.HandleMessage(HvMessage(kInteractionChanged), &circle_);
  EXPECT_TRUE(world_.theOperator->writes.empty());
  circle_.HandleMessage(end, &circle_);
  circle_.HandleMessage(HvMessage(kInteractionEndsToo), &circle_);
  EXPECT_EQ(world_.theOperator->writes.size(), 2u);
}

TEST_F(HvTDsCircleTest, HasItsDependantsReadAgain) {
  HvTDsCircle other;
  other.BindProperties(kBlurId, kAspectId);
  world_.tool->AddDsObject(&other);
  circle_.dependants().Append(&other);
  other.SetRadius(3.0f);
  circle_.HandleMessage(HvMessage(kInteractionEnds), &circle_);
  EXPECT_EQ(other.radius(), 50.0f);
}

class HvTDsCropTest : public testing::Test {
 protected:
  HvTDsCropTest() {
    crop_.SetParent(&world_.tool->viewZero());
    crop_.BindProperties(kLeftId, kRightId, kBottomId, kTopId);
    world_.theOperator->values = {10.0, 0.0, 10.0, 90.0, 20.0, 80.0};
    world_.tool->AddDsObject(&crop_);
    world_.viewer.invalidations = 0;
  }

  HvBox Lines() const { return {crop_.x0(), crop_.x1(), crop_.y0(), crop_.y1()}; }
  void Drag(double fromX, double fromY, double toX, double toY) {
    world_.PenMove(fromX, fromY);
    world_.PenDown(fromX, fromY);
    world_.PenMove(toX, toY);
    world_.PenUp(toX, toY);
  }

  test::ToolWorld world_;
  HvTDsCrop crop_;
};

TEST_F(HvTDsCropTest, IsLimitedToTheFrame) {
  EXPECT_STREQ(crop_.name(), "Crop Box");
  EXPECT_EQ(crop_.limits(), (HvBox{0.0f, 400.0f, 0.0f, 200.0f}));
  EXPECT_EQ(Lines(), (HvBox{40.0f, 360.0f, 40.0f, 160.0f}));
}

TEST_F(HvTDsCropTest, WritesOneEdge) {
  Drag(40.0, 100.0, 60.0, 110.0);
  EXPECT_EQ(world_.theOperator->writes, (Writes{{kLeftId, 15.0}}));
  EXPECT_EQ(Lines(), (HvBox{60.0f, 360.0f, 40.0f, 160.0f}));
}

TEST_F(HvTDsCropTest, WritesTwoEdgesOfACorner) {
  Drag(360.0, 160.0, 300.0, 150.0);
  EXPECT_EQ(world_.theOperator->writes, (Writes{{kRightId, 75.0}, {kTopId, 75.0}}));
}

TEST_F(HvTDsCropTest, WritesLeftRightBottomTop) {
  Drag(40.0, 40.0, 80.0, 60.0);
  EXPECT_EQ(world_.theOperator->writes, (Writes{{kLeftId, 20.0}, {kBottomId, 30.0}}));
}

TEST_F(HvTDsCropTest, FollowsOneProperty) {
  world_.theOperator->PutValue(kTopId, DSVariant::Of(60.0));
  EXPECT_EQ(Lines(), (HvBox{40.0f, 360.0f, 40.0f, 120.0f}));
  EXPECT_EQ(world_.viewer.TakeInvalidations(), 1);
  world_.theOperator->PutValue(kBlurId, DSVariant::Of(60.0));
  EXPECT_EQ(world_.viewer.TakeInvalidations(), 0);
}

TEST_F(HvTDsCropTest, TakesOneValueForAllProperties) {
  const DSVariant value = DSVariant::Of(50.0);
  EXPECT_EQ(crop_.OnPropertyChange(GUID_ALL_PROPERTIES, &value), 1);
  EXPECT_EQ(Lines(), (HvBox{200.0f, 200.0f, 100.0f, 100.0f}));
  EXPECT_EQ(crop_.OnPropertyChange(GUID_ALL_PROPERTIES, nullptr), 1);
  EXPECT_EQ(Lines(), (HvBox{40.0f, 360.0f, 40.0f, 160.0f}));
  EXPECT_EQ(crop_.OnPropertyChange(kStranger, nullptr), 0);
  EXPECT_EQ(crop_.OnPropertyChange(kStranger, &value), 0);
}

TEST_F(HvTDsCropTest, ReadsAllFourOrNone) {
  crop_.BindProperties(kLeftId, kStranger, kBottomId, kTopId);
  world_.theOperator->values[2] = 30.0;
  crop_.Refresh();
  EXPECT_EQ(Lines(), (HvBox{40.0f, 360.0f, 40.0f, 160.0f}));
}

TEST_F(HvTDsCropTest, ComparesAnEmptySlotOnlyWhereAValueIsGiven) {
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

TEST_F(HvTDsCropTest, WritesNothingForAnEmptySlot) {
  crop_.BindProperties(GUID_NO_PROPERTY, kRightId, kBottomId, GUID_NO_PROPERTY);
  Drag(40.0, 160.0, 60.0, 150.0);
  EXPECT_TRUE(world_.theOperator->writes.empty());
  Drag(60.0, 40.0, 80.0, 50.0);
  EXPECT_EQ(world_.theOperator->writes, (Writes{{kBottomId, 25.0}}));
}

TEST_F(HvTDsCropTest, FollowsTheTime) {
  world_.theOperator->PutCurve(kLeftId, DSCurve{{{0.0, 0.0}, {10.0, 50.0}}});
  world_.tool->OnOnTimeChange(4.0);
  EXPECT_EQ(Lines(), (HvBox{80.0f, 360.0f, 40.0f, 160.0f}));
}

TEST_F(HvTDsCropTest, MovesWithItsLimitsAndLeavesTheProperties) {
  crop_.SetLimits(100.0f, 50.0f, 300.0f, 150.0f);
  crop_.Refresh();
  EXPECT_EQ(Lines(), (HvBox{120.0f, 280.0f, 70.0f, 130.0f}));
  EXPECT_TRUE(world_.theOperator->writes.empty());
}

TEST_F(HvTDsCropTest, DividesByLimitsOfNoExtentAndTheHostRefuses) {
  crop_.SetLimits(100.0f, 50.0f, 100.0f, 150.0f);
  crop_.Refresh();
  EXPECT_EQ(crop_.x0(), 100.0f);
  // The corner of left and bottom: 0 / 0, and a write that is as usual.
  Drag(100.0, 70.0, 100.0, 90.0);
  ASSERT_EQ(world_.theOperator->writes.size(), 2u);
  EXPECT_EQ(world_.theOperator->writes[0].first, kLeftId);
  EXPECT_TRUE(std::isnan(world_.theOperator->writes[0].second));
  EXPECT_EQ(world_.theOperator->writes[1], std::pair(kBottomId, 40.0));
  EXPECT_EQ(world_.theOperator->values[2], 10.0) << "the failed write is dropped";
  EXPECT_EQ(world_.theOperator->values[4], 40.0);
  EXPECT_FALSE(world_.tool->WriteAnimated(kLeftId, std::numeric_limits<double>::infinity()));
}

TEST(HvTDsLifetime, BindingsGoBeforeTheTool) {
  test::ToolWorld world;
  {
    HvTDsCircle circle;
    HvTDsCrop crop;
    circle.SetParent(&world.tool->frameCentre());
    crop.SetParent(&world.tool->viewZero());
    circle.BindProperties(kBlurId, kAspectId);
    crop.BindProperties(kLeftId, kRightId, kBottomId, kTopId);
    world.tool->AddDsObject(&circle);
    world.tool->AddDsObject(&crop);
    world.PenMove(210.0, 100.0);
    EXPECT_EQ(world.tool->hover(), &circle);
    world.PenDown(210.0, 100.0);
  }
  EXPECT_EQ(world.tool->hover(), nullptr);
  world.PenMove(220.0, 100.0);
  world.PenUp(220.0, 100.0);
  world.tool->OnOnTimeChange(3.0);
  EXPECT_TRUE(world.theOperator->writes.empty());
}

TEST(HvTDsLifetime, BindingsOutliveTheTool) {
  HvTDsCircle circle;
  {
    test::ToolWorld world;
    circle.SetParent(&world.tool->frameCentre());
    circle.BindProperties(kBlurId, kAspectId);
    world.tool->AddDsObject(&circle);
  }
  EXPECT_EQ(circle.tool(), nullptr);
  EXPECT_EQ(circle.parent(), nullptr);
  circle.Commit();
  circle.Refresh();
}

}  // namespace
}  // namespace vblur
