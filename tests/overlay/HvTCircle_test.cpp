#include "overlay/HvTCircle.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "overlay/HvTGroup.h"
#include "overlay/HvTManager.h"
#include "tests/overlay/DrawnStates.h"
#include "tests/overlay/Hearer.h"

namespace vblur {
namespace {

constexpr float kFlatAspect = std::numeric_limits<float>::infinity();

class HvTCircleOnItsOwn : public ::testing::Test {
 protected:
  bool hits(float x, float y, HvPoint tolerance = {3, 3}) {
    circle.SetTarget(nullptr);
    const HvPick pick = circle.Pick({x, y}, tolerance);
    EXPECT_EQ(circle.Target(), pick.Object());
    EXPECT_FALSE(pick.IsSwallowed());
    return pick == HvPick(&circle);
  }

  HvTCircle circle{"Circle", 100};
  test::Hearer hearer{circle};
};

TEST_F(HvTCircleOnItsOwn, StartsRound) {
  EXPECT_STREQ(circle.Name(), "Circle");
  EXPECT_EQ(circle.Radius(), 100.0f);
  EXPECT_EQ(circle.Aspect(), 1.0f);
  EXPECT_EQ(circle.Colour(), (HvColour{0.7f, 0.7f, 0}));
  EXPECT_EQ(circle.Box(), (HvBox{-100, 100, -100, 100}));
  EXPECT_EQ(circle.Flags(), 7u);
}

TEST_F(HvTCircleOnItsOwn, IsHitOnItsLineAlone) {
  EXPECT_TRUE(hits(100, 0));
  EXPECT_TRUE(hits(0, -100));
  EXPECT_TRUE(hits(60, 80));
  EXPECT_FALSE(hits(0, 0));
  EXPECT_TRUE(hits(102.99f, 0));
  EXPECT_FALSE(hits(103, 0)) << "the distance must be smaller than the tolerance";
  EXPECT_TRUE(hits(-97.01f, 0));
  EXPECT_FALSE(hits(-97, 0));
}

TEST_F(HvTCircleOnItsOwn, TakesTheToleranceOfXForBothAxes) {
  EXPECT_TRUE(hits(0, 104, {5, 0}));
  EXPECT_FALSE(hits(0, 104, {3, 50}));
}

TEST_F(HvTCircleOnItsOwn, IsNeverLargerThanItsRadius) {
  EXPECT_TRUE(circle.SetAspect(2));
  EXPECT_EQ(circle.Box(), (HvBox{-100, 100, -50, 50}));
  EXPECT_TRUE(hits(0, 50, {0.001f, 0}));
  EXPECT_TRUE(hits(100, 0, {0.001f, 0}));
  EXPECT_TRUE(circle.SetAspect(0.5f));
  EXPECT_EQ(circle.Box(), (HvBox{-50, 50, -100, 100}));
  EXPECT_TRUE(hits(50, 0, {0.001f, 0}));
  EXPECT_TRUE(hits(0, 100, {0.001f, 0}));
  // The tolerance applies where the ring is round: 2 pixels in x are 4 there.
  EXPECT_FALSE(hits(52, 0, {4, 4}));
  EXPECT_TRUE(hits(51.9f, 0, {4, 4}));
}

TEST_F(HvTCircleOnItsOwn, CutsItsBoxToWholeNumbers) {
  circle.SetRadius(10.9f);
  EXPECT_EQ(circle.Box(), (HvBox{-10, 10, -10, 10}));
  circle.SetAspect(3);
  EXPECT_EQ(circle.Box(), (HvBox{-10, 10, -3, 3}));
  EXPECT_EQ(circle.Size(), (HvPoint{20, 6}));
  circle.SetRadius(0.5f);
  EXPECT_EQ(circle.Box(), (HvBox{0, 0, 0, 0}));
}

TEST_F(HvTCircleOnItsOwn, ChangesOnlyToWhatDiffers) {
  HvTGroup group("g");
  circle.SetParent(&group);
  EXPECT_FALSE(circle.SetRadius(100));
  EXPECT_FALSE(circle.SetAspect(1));
  EXPECT_TRUE(circle.SetRadius(7));
  EXPECT_EQ(group.Box(), (HvBox{-7, 7, -7, 7}));
  EXPECT_EQ(hearer.take(), "") << "only the pen sends";
}

TEST_F(HvTCircleOnItsOwn, SendsTheWholeOfADrag) {
  EXPECT_EQ(circle.Press({100, 0}), 1);
  EXPECT_TRUE(circle.IsPressed());
  EXPECT_EQ(hearer.take(), "200 0; ");
  EXPECT_EQ(circle.Drag({30, 40}), 1);
  EXPECT_EQ(circle.Radius(), 50.0f);
  EXPECT_EQ(circle.Box(), (HvBox{-50, 50, -50, 50}));
  EXPECT_EQ(hearer.take(), "201 3 50; ");
  EXPECT_EQ(circle.Drag({0, -50}), 0) << "the same radius";
  EXPECT_EQ(hearer.take(), "");
  EXPECT_EQ(circle.Release(), 1);
  EXPECT_FALSE(circle.IsPressed());
  EXPECT_EQ(hearer.take(), "202 0; ");
}

TEST_F(HvTCircleOnItsOwn, SendsBeforeItsFlagChanges) {
  hearer.whileHearing = [&] { EXPECT_FALSE(circle.IsPressed()); };
  circle.Press({100, 0});
  hearer.whileHearing = [&] { EXPECT_TRUE(circle.IsPressed()); };
  circle.Release();
}

TEST_F(HvTCircleOnItsOwn, DragsWithoutAnOffset) {
  circle.SetAspect(2);
  circle.Press({0, 52});
  circle.Drag({0, 51});
  EXPECT_EQ(circle.Radius(), 102.0f);
  circle.Drag({-40, 0});
  EXPECT_EQ(circle.Radius(), 40.0f);
  circle.Drag({0, 0});
  EXPECT_EQ(circle.Radius(), 0.0f);
}

TEST_F(HvTCircleOnItsOwn, MayShrinkToNothing) {
  circle.SetRadius(0);
  EXPECT_TRUE(hits(2, 0));
  EXPECT_EQ(circle.Drag({3, 4}), 1);
  EXPECT_EQ(circle.Radius(), 5.0f);
}

TEST_F(HvTCircleOnItsOwn, IsNeverHitWhereItIsFlat) {
  for (const float aspect : {0.0f, kFlatAspect}) {
    circle.SetAspect(aspect);
    for (const float at : {0.0f, 1.0f, 50.0f, 100.0f}) {
      EXPECT_FALSE(hits(at, 0));
      EXPECT_FALSE(hits(0, at));
      EXPECT_FALSE(hits(at, at, {1e30f, 1e30f}));
    }
    EXPECT_EQ(circle.Drag({50, 50}), 0);
    EXPECT_EQ(circle.Radius(), 100.0f);
  }
  EXPECT_EQ(circle.Box(), (HvBox{-100, 100, 0, 0}));
  circle.SetAspect(0);
  EXPECT_EQ(circle.Box(), (HvBox{0, 0, -100, 100}));
  EXPECT_EQ(hearer.take(), "");
}

TEST_F(HvTCircleOnItsOwn, DrawsEachState) {
  test::DrawnStates states;
  states.draw(circle, "idle");
  circle.Enter({});
  states.draw(circle, "hovered");
  circle.Leave();
  circle.Press({});
  states.draw(circle, "pressed");
  circle.Release();
  circle.SetAspect(2);
  states.draw(circle, "aspect 2");
  circle.SetAspect(0.25f);
  states.draw(circle, "aspect 0.25");
  circle.SetAspect(0);
  states.draw(circle, "flat in x");
  circle.SetAspect(kFlatAspect);
  states.draw(circle, "flat in y");
  circle.SetAspect(1);
  circle.SetRadius(0);
  states.draw(circle, "radius 0");
  EXPECT_TRUE(states.match("HvTCircle"));
}

TEST(HvTCircle, FollowsThePenUnderAManager) {
  HvTCircle circle("Circle", 10);
  HvTGroup centre("Frame Centre");
  HvTManager manager;
  centre.SetGroupFlags(0);
  manager.AddObject(&centre);
  circle.SetParent(&centre);
  const auto pen = [&](std::uint32_t id, float x, float y) { manager.PostMessage(HvMessage::OfPosition(id, {x, y})); };
  pen(kPenDown, 11, 0);
  pen(kPenMoved, 200, 0);
  pen(kPenMoved, 0, 300);
  EXPECT_EQ(circle.Radius(), 300.0f);
  pen(kPenUp, 0, 301);
  EXPECT_EQ(circle.Radius(), 300.0f) << "a release drags no more";
  EXPECT_TRUE(circle.IsHovered());
}

}  // namespace
}  // namespace vblur
