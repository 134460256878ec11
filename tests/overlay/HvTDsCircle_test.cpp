#include "overlay/HvTDsCircle.h"

#include <limits>

#include <gtest/gtest.h>

#include "tests/overlay/ToolWorld.h"

namespace vblur {
namespace {

using test::kAspectId;
using test::kBlurId;
using test::kLeftId;
using Writes = std::vector<test::TestOperator::Write>;

TEST(HvTDsCircle, DrawsAnAspectOfOneOverWhatIsLeftAboveZeroAndWhatIsLeftBelow) {
  EXPECT_EQ(AspectToDraw(0.0), 1.0f);
  EXPECT_EQ(AspectToDraw(0.5), 2.0f);
  EXPECT_EQ(AspectToDraw(1.0), std::numeric_limits<float>::infinity());
  EXPECT_EQ(AspectToDraw(7.0), std::numeric_limits<float>::infinity());
  EXPECT_EQ(AspectToDraw(-0.25), 0.75f);
  EXPECT_EQ(AspectToDraw(-1.0), 0.0f);
  EXPECT_EQ(AspectToDraw(-7.0), 0.0f);
}

class HvTDsCircleOnATool : public testing::Test {
 protected:
  HvTDsCircleOnATool() {
    circle_.SetParent(&world_.tool->FrameCentre());
    circle_.BindProperties(kBlurId, kAspectId);
    world_.theOperator->values[0] = 50.0;
    world_.tool->AddDsObject(&circle_);
    world_.viewer.invalidations = 0;
  }

  test::ToolWorld world_;
  HvTDsCircle circle_;
};

TEST_F(HvTDsCircleOnATool, IsNamedAndStartsAtAHundred) {
  HvTDsCircle fresh;
  EXPECT_STREQ(fresh.Name(), "Circle");
  EXPECT_EQ(fresh.Radius(), 100.0f);
  EXPECT_EQ(fresh.Tool(), nullptr);
  fresh.Commit();
  fresh.Refresh();
  EXPECT_EQ(fresh.OnPropertyChange(kBlurId, nullptr), 0);
  EXPECT_EQ(fresh.Radius(), 100.0f) << "without a tool nothing is read";
}

TEST_F(HvTDsCircleOnATool, ReadsWhenItIsTakenOn) {
  EXPECT_EQ(circle_.Radius(), 50.0f);
  EXPECT_EQ(circle_.Aspect(), 1.0f);
}

TEST_F(HvTDsCircleOnATool, WritesOnceWhateverTheNumberOfMoves) {
  world_.PenMove(250.0, 100.0);
  world_.PenDown(250.0, 100.0);
  for (int x = 251; x < 300; ++x)
    world_.PenMove(x, 100.0);
  EXPECT_EQ(circle_.Radius(), 99.0f);
  EXPECT_TRUE(world_.theOperator->writes.empty());
  world_.PenUp(299.0, 100.0);
  EXPECT_EQ(world_.theOperator->writes, (Writes{{kBlurId, 99.0}}));
}

TEST_F(HvTDsCircleOnATool, WritesItsRadiusOnAReleaseWithoutMovement) {
  world_.PenDown(250.0, 100.0);
  world_.PenUp(250.0, 100.0);
  EXPECT_EQ(world_.theOperator->writes, (Writes{{kBlurId, 50.0}}));
}

TEST_F(HvTDsCircleOnATool, NeverWritesTheAspect) {
  world_.theOperator->PutValue(kAspectId, DSVariant::Of(50.0));
  world_.theOperator->writes.clear();
  world_.PenDown(250.0, 100.0);
  world_.PenMove(280.0, 100.0);
  world_.PenUp(280.0, 100.0);
  EXPECT_EQ(world_.theOperator->writes, (Writes{{kBlurId, 80.0}}));
}

TEST_F(HvTDsCircleOnATool, FollowsItsProperties) {
  world_.theOperator->PutValue(kBlurId, DSVariant::Of(33.5));
  EXPECT_EQ(circle_.Radius(), 33.5f);
  EXPECT_EQ(world_.viewer.TakeInvalidations(), 1);
  world_.theOperator->PutValue(kAspectId, DSVariant::Of(-50.0));
  EXPECT_EQ(circle_.Aspect(), 0.5f);
  EXPECT_EQ(circle_.Size(), (HvPoint{32.0f, 66.0f})) << "half the width, truncated";
  world_.theOperator->PutValue(kAspectId, DSVariant::Of(50.0));
  EXPECT_EQ(circle_.Size(), (HvPoint{66.0f, 32.0f}));
  world_.theOperator->PutValue(kAspectId, DSVariant::Of(-100.0));
  EXPECT_EQ(circle_.Size(), (HvPoint{0.0f, 66.0f}));
  world_.theOperator->PutValue(kAspectId, DSVariant::Of(100.0));
  EXPECT_EQ(circle_.Size(), (HvPoint{66.0f, 0.0f}));
}

TEST_F(HvTDsCircleOnATool, IgnoresOtherProperties) {
  const DSVariant value = DSVariant::Of(7.0);
  EXPECT_EQ(circle_.OnPropertyChange(kLeftId, &value), 0);
  EXPECT_EQ(circle_.OnPropertyChange(kLeftId, nullptr), 0);
  EXPECT_EQ(circle_.Radius(), 50.0f);
}

TEST_F(HvTDsCircleOnATool, TakesAValueForAllProperties) {
  const DSVariant value = DSVariant::Of(25.0);
  EXPECT_EQ(circle_.OnPropertyChange(GUID_ALL_PROPERTIES, &value), 1);
  EXPECT_EQ(circle_.Radius(), 25.0f);
  EXPECT_FLOAT_EQ(circle_.Aspect(), 1.0f / 0.75f);
}

TEST_F(HvTDsCircleOnATool, ReadsWhatAChangeWithoutAValueConcerns) {
  world_.theOperator->values = {20.0, 50.0, 0.0, 100.0, 0.0, 100.0};
  EXPECT_EQ(circle_.OnPropertyChange(kBlurId, nullptr), 1);
  EXPECT_EQ(circle_.Radius(), 20.0f);
  EXPECT_EQ(circle_.Aspect(), 1.0f);
  EXPECT_EQ(circle_.OnPropertyChange(GUID_ALL_PROPERTIES, nullptr), 1);
  EXPECT_EQ(circle_.Aspect(), 2.0f);
}

TEST_F(HvTDsCircleOnATool, ComparesAnEmptySlotOnlyWhereAValueIsGiven) {
  circle_.BindProperties(GUID_NO_PROPERTY, GUID_NO_PROPERTY);
  const DSVariant value = DSVariant::Of(7.0);
  EXPECT_EQ(circle_.OnPropertyChange(GUID_NO_PROPERTY, nullptr), 0);
  EXPECT_EQ(circle_.Radius(), 50.0f);
  EXPECT_EQ(circle_.OnPropertyChange(GUID_NO_PROPERTY, &value), 1);
  EXPECT_EQ(circle_.Radius(), 7.0f);
}

TEST_F(HvTDsCircleOnATool, FollowsTheTime) {
  world_.theOperator->PutCurve(kBlurId, DSCurve{{{0.0, 10.0}, {10.0, 110.0}}});
  world_.tool->OnOnTimeChange(5.0);
  EXPECT_EQ(circle_.Radius(), 60.0f);
  world_.tool->OnOnTimeChange(10.0);
  EXPECT_EQ(circle_.Radius(), 110.0f);
}

TEST_F(HvTDsCircleOnATool, SetsAKeyAtTheViewersTime) {
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

TEST_F(HvTDsCircleOnATool, StaysAsItIsWhileTheToolIsNotLinked) {
  world_.tool->OnUnlinkFromOperator();
  circle_.Refresh();
  circle_.Commit();
  EXPECT_EQ(circle_.Radius(), 50.0f);
  EXPECT_TRUE(world_.theOperator->writes.empty());
}

TEST_F(HvTDsCircleOnATool, ObeysItsOwnSenderAlone) {
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

TEST_F(HvTDsCircleOnATool, HasItsDependantsReadAgain) {
  HvTDsCircle other;
  other.BindProperties(kBlurId, kAspectId);
  world_.tool->AddDsObject(&other);
  circle_.Dependants().Append(&other);
  other.SetRadius(3.0f);
  circle_.HandleMessage(HvMessage(kInteractionEnds), &circle_);
  EXPECT_EQ(other.Radius(), 50.0f);
}

}  // namespace
}  // namespace vblur
