// Dragging the axis control, and its messages.
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "overlay/HvT2DAxis.h"
#include "overlay/HvTGroup.h"
#include "tests/overlay/Hearer.h"

namespace vblur {
namespace {

class HvT2DAxisDrag : public ::testing::Test {
 protected:
  // Picks and presses the handle at a point.
  void press(HvPoint pos, std::uint32_t expected) {
    axis.Pick(pos, {2, 2});
    ASSERT_EQ(axis.Active(), expected);
    EXPECT_EQ(axis.Press(pos), 1);
  }
  void drag(float x, float y) { EXPECT_EQ(axis.Drag({x, y}), 1); }
  // The box from ComputeBox.
  HvBox currentBox() {
    HvBox box;
    axis.ComputeBox(box);
    return BoxOf({box.minX, box.minY}, {box.maxX - box.minX, box.maxY - box.minY});
  }

  HvT2DAxis axis{"axis", 127};
};

TEST_F(HvT2DAxisDrag, PressesNothingWithoutAHandle) {
  test::Hearer hearer(axis);
  EXPECT_EQ(axis.Press({0, 0}), 0);
  EXPECT_FALSE(axis.IsPressed());
  EXPECT_EQ(hearer.take(), "");
}

TEST_F(HvT2DAxisDrag, SendsBeginChangeAndEndWithTheHandle) {
  test::Hearer hearer(axis);
  press({0, 0}, 3);
  EXPECT_EQ(hearer.take(), "200 1 3; ");
  drag(1, 1);
  drag(1, 1);
  EXPECT_EQ(hearer.take(), "201 1 3; 201 1 3; ");
  EXPECT_EQ(axis.Release(), 1);
  EXPECT_EQ(hearer.take(), "202 1 3; ");
  EXPECT_EQ(axis.Active(), 0u);
  EXPECT_FALSE(axis.IsPressed());
  axis.Release();
  EXPECT_EQ(hearer.take(), "202 1 0; ");
}

TEST_F(HvT2DAxisDrag, SendsForEveryHandle) {
  test::Hearer hearer(axis);
  const auto hears = [&](HvPoint pos) {
    axis.Pick(pos, {2, 2});
    axis.Press(pos);
    axis.Release();
    return hearer.take();
  };
  EXPECT_EQ(hears({20, 0}), "200 1 1; 202 1 1; ");
  EXPECT_EQ(hears({0, 20}), "200 1 2; 202 1 2; ");
  EXPECT_EQ(hears({37, 37}), "200 1 4; 202 1 4; ");
  EXPECT_EQ(hears({37, 10}), "200 1 8; 202 1 8; ");
  EXPECT_EQ(hears({10, 37}), "200 1 16; 202 1 16; ");
  EXPECT_EQ(hears({32, 0}), "200 1 32; 202 1 32; ");
  EXPECT_EQ(hears(axis.AspectHandlePos()), "200 1 64; 202 1 64; ");
}

TEST_F(HvT2DAxisDrag, SendsBeginBeforeItIsPressedAndEndWhileItIs) {
  test::Hearer hearer(axis);
  int heard = 0;
  hearer.whileHearing = [&] {
    EXPECT_EQ(axis.IsPressed(), heard != 0);
    ++heard;
    EXPECT_EQ(axis.Active(), 3u);
  };
  press({0, 0}, 3);
  drag(1, 1);
  axis.Release();
  EXPECT_EQ(heard, 3);
}

TEST_F(HvT2DAxisDrag, SendsChangeAfterTheBoxAndBeforeTheSpaceIsUpdated) {
  test::Hearer hearer(axis);
  int heard = 0;
  press({0, 0}, 3);
  axis.ToLocal({0, 0});
  hearer.whileHearing = [&] {
    ++heard;
    EXPECT_EQ(axis.Centre(), (HvPoint{3, 4}));
    EXPECT_EQ(axis.Origin(), (HvPoint{-34, -33}));
    EXPECT_EQ(axis.AxisFlags() & HvT2DAxis::kMatricesStale, 0u);
    EXPECT_EQ(axis.ToLocal({3, 4}), (HvPoint{3, 4}));
  };
  drag(3, 4);
  EXPECT_EQ(heard, 1);
  EXPECT_EQ(axis.ToLocal({3, 4}), (HvPoint{0, 0}));
}

TEST_F(HvT2DAxisDrag, OfNothingChangesNothingAndSends) {
  test::Hearer hearer(axis);
  axis.ToLocal({0, 0});
  const HvBox before = axis.Box();
  drag(5, 5);
  EXPECT_EQ(hearer.take(), "201 1 0; ");
  EXPECT_EQ(axis.Box(), before);
  EXPECT_EQ(axis.Centre(), (HvPoint{0, 0}));
  EXPECT_EQ(axis.AxisFlags() & HvT2DAxis::kMatricesStale, 1u);
}

TEST_F(HvT2DAxisDrag, OfTheCentreMovesByWhatThePenMoves) {
  press({1, 1}, 3);
  drag(4, -2);
  EXPECT_EQ(axis.Centre(), (HvPoint{3, -3}));
  EXPECT_EQ(axis.Origin(), (HvPoint{-34, -40}));
  drag(4, -2);
  EXPECT_EQ(axis.Centre(), (HvPoint{3, -3}));
  drag(-6, 0);
  EXPECT_EQ(axis.Centre(), (HvPoint{-7, -1}));
  EXPECT_EQ(axis.ToLocal({-7, 0}), (HvPoint{0, 1}));
}

TEST_F(HvT2DAxisDrag, OfAnArrowMovesAlongIt) {
  press({20, 0}, 1);
  drag(25, 7);
  EXPECT_EQ(axis.Centre(), (HvPoint{5, 0}));
  EXPECT_EQ(axis.Origin(), (HvPoint{-32, -37}));
  axis.Release();
  press({5, 20}, 2);
  drag(11, 17);
  EXPECT_EQ(axis.Centre(), (HvPoint{5, -3}));
  EXPECT_EQ(axis.Origin(), (HvPoint{-32, -40}));
}

TEST_F(HvT2DAxisDrag, OfTheArcRotatesByThePensAngle) {
  press({32, 0}, 32);
  drag(0, 32);
  EXPECT_EQ(axis.Rotation(), 90.0f);
  drag(0, 500);
  EXPECT_EQ(axis.Rotation(), 90.0f);
  drag(500, 500);
  EXPECT_EQ(axis.Rotation(), 45.0f);
  EXPECT_EQ(axis.Centre(), (HvPoint{0, 0}));
}

TEST_F(HvT2DAxisDrag, OfTheArcBeginsWhereItWasTaken) {
  axis.SetRotation(10);
  axis.SetCentre(100, 200);
  press({100 + 31.5f, 205}, 32);
  drag(100 + 31.5f, 205);
  EXPECT_EQ(axis.Rotation(), 10.0f);
  drag(95, 200 + 31.5f);
  EXPECT_FLOAT_EQ(axis.Rotation(), 100.0f);
}

TEST_F(HvT2DAxisDrag, OfTheArcCrossesTheSeam) {
  press({32, 0}, 32);
  const float steps[] = {90, 180, 270, 360, 450, 540, 630, 720};
  const HvPoint way[] = {{0, 32}, {-32, 0}, {0, -32}, {32, 0}};
  for (int i = 0; i < 8; ++i) {
    axis.Drag(way[i % 4]);
    EXPECT_EQ(axis.Rotation(), steps[i]);
  }
}

TEST_F(HvT2DAxisDrag, OfTheArcCrossesTheSeamInReverse) {
  press({32, 0}, 32);
  const float steps[] = {-90, -180, -270, -360, -450};
  const HvPoint way[] = {{0, -32}, {-32, -0.0f}, {0, 32}, {32, 0}, {0, -32}};
  for (int i = 0; i < 5; ++i) {
    axis.Drag(way[i]);
    EXPECT_EQ(axis.Rotation(), steps[i]);
  }
}

TEST_F(HvT2DAxisDrag, OfTheArcTakesHalfATurnAsIs) {
  press({32, 0}, 32);
  drag(-32, 0);
  EXPECT_EQ(axis.Rotation(), 180.0f);
  drag(32, 0);
  EXPECT_EQ(axis.Rotation(), 0.0f);
}

TEST_F(HvT2DAxisDrag, OfTheArcFoldsASmallStepAcrossTheSeam) {
  press({32, 0}, 32);
  drag(-1000, 1);
  const float before = axis.Rotation();
  drag(-1000, -1);
  EXPECT_NEAR(axis.Rotation() - before, 2 * std::atan(0.001) * 180 / std::numbers::pi, 1e-4);
  drag(-1000, 1);
  EXPECT_NEAR(axis.Rotation(), before, 1e-4);
}

TEST_F(HvT2DAxisDrag, OfACornerScalesByTheFartherAxis) {
  press({37, 37}, 4);
  drag(74, 37);
  EXPECT_EQ(axis.Scale(), 2.0f);
  drag(37, -111);
  EXPECT_EQ(axis.Scale(), -3.0f);
  drag(37, -37);
  EXPECT_EQ(axis.Scale(), -1.0f);
  drag(-18.5f, 0);
  EXPECT_EQ(axis.Scale(), -0.5f);
  EXPECT_EQ(axis.AxisScale(), (HvPoint{1, 1}));
  EXPECT_EQ(axis.Aspect(), 0.0f);
  EXPECT_EQ(axis.Box(), currentBox());
}

TEST_F(HvT2DAxisDrag, OfANegativeCornerFollowsThePen) {
  press({-37, -37}, 4);
  drag(-74, 0);
  EXPECT_EQ(axis.Scale(), 2.0f);
  drag(0, -111);
  EXPECT_EQ(axis.Scale(), 3.0f);
  drag(0, 37);
  EXPECT_EQ(axis.Scale(), -1.0f);
}

TEST_F(HvT2DAxisDrag, OfACornerKeepsEachSideByItself) {
  press({-37, 37}, 4);
  drag(-74, 0);
  EXPECT_EQ(axis.Scale(), 2.0f);
  drag(0, 111);
  EXPECT_EQ(axis.Scale(), 3.0f);
}

TEST_F(HvT2DAxisDrag, OfACornerWithANegativeScaleFollowsThePen) {
  axis.SetScale(-1);
  press({37, 37}, 4);
  drag(74, 0);
  EXPECT_EQ(axis.Scale(), -2.0f);
  drag(0, 18.5f);
  EXPECT_EQ(axis.Scale(), -0.5f);
}

TEST_F(HvT2DAxisDrag, OfACornerTakesTheScalesOfTheAxesOut) {
  axis.SetAxisScale(2, 0.5f);
  press({74, 18.5f}, 4);
  drag(148, 0);
  EXPECT_EQ(axis.Scale(), 2.0f);
  drag(0, 55.5f);
  EXPECT_EQ(axis.Scale(), 3.0f);
  // 37 along x is 18.5, 12 along y is 24.
  drag(37, 12);
  EXPECT_FLOAT_EQ(axis.Scale(), 24.0f / 37.0f);
}

TEST_F(HvT2DAxisDrag, OfABoxHandleUndoesTheRotationAtThePress) {
  axis.SetRotation(90);
  axis.SetCentre(10, 20);
  press({10 - 37, 20 + 37}, 4);
  axis.SetRotation(0);
  drag(10 - 37, 20 + 74);
  EXPECT_FLOAT_EQ(axis.Scale(), 2.0f);
  drag(10 - 111, 20);
  EXPECT_FLOAT_EQ(axis.Scale(), 3.0f);
}

TEST_F(HvT2DAxisDrag, OfAVerticalEdgeScalesAlongX) {
  press({37, 10}, 8);
  drag(74, 500);
  EXPECT_EQ(axis.AxisScale(), (HvPoint{2, 1}));
  drag(-18.5f, -3);
  EXPECT_EQ(axis.AxisScale(), (HvPoint{-0.5f, 1}));
  axis.Release();
  axis.SetAxisScale(1, 1);
  axis.SetScale(2);
  press({-74, 10}, 8);
  drag(-37, 10);
  EXPECT_EQ(axis.AxisScale(), (HvPoint{0.5f, 1}));
  drag(74, 10);
  EXPECT_EQ(axis.AxisScale(), (HvPoint{-1, 1}));
  EXPECT_EQ(axis.Scale(), 2.0f);
  EXPECT_EQ(axis.Box(), currentBox());
}

TEST_F(HvT2DAxisDrag, OfAHorizontalEdgeScalesAlongY) {
  press({10, 37}, 16);
  drag(500, 74);
  EXPECT_EQ(axis.AxisScale(), (HvPoint{1, 2}));
  drag(-3, -18.5f);
  EXPECT_EQ(axis.AxisScale(), (HvPoint{1, -0.5f}));
  axis.Release();
  axis.SetAxisScale(1, 1);
  axis.SetScale(2);
  press({10, -74}, 16);
  drag(10, -37);
  EXPECT_EQ(axis.AxisScale(), (HvPoint{1, 0.5f}));
  drag(10, 74);
  EXPECT_EQ(axis.AxisScale(), (HvPoint{1, -1}));
  EXPECT_EQ(axis.Scale(), 2.0f);
}

TEST_F(HvT2DAxisDrag, OfAnEdgeUndoesTheRotation) {
  axis.SetRotation(90);
  press({10, 37}, 8);
  drag(500, 74);
  EXPECT_NEAR(axis.AxisScale().x, 2, 1e-4);
  EXPECT_EQ(axis.AxisScale().y, 1.0f);
  axis.Release();
  axis.SetAxisScale(1, 1);
  press({-37, 10}, 16);
  drag(-74, 500);
  EXPECT_NEAR(axis.AxisScale().y, 2, 1e-4);
  EXPECT_EQ(axis.AxisScale().x, 1.0f);
}

TEST_F(HvT2DAxisDrag, OfTheDotSharesByThePensSlope) {
  press(axis.AspectHandlePos(), 64);
  drag(40, 20);
  EXPECT_EQ(axis.Aspect(), 0.5f);
  drag(20, 40);
  EXPECT_EQ(axis.Aspect(), -0.5f);
  drag(40, 40);
  EXPECT_EQ(axis.Aspect(), 0.0f);
  drag(40, 0);
  EXPECT_EQ(axis.Aspect(), 1.0f);
  drag(0, 40);
  EXPECT_EQ(axis.Aspect(), -1.0f);
  EXPECT_EQ(axis.Scale(), 1.0f);
  EXPECT_EQ(axis.AxisScale(), (HvPoint{1, 1}));
}

TEST_F(HvT2DAxisDrag, OfTheDotBeyondAnAxisPinsTheAspectByItsSign) {
  press(axis.AspectHandlePos(), 64);
  for (const HvPoint beyond : {HvPoint{-5, 5}, HvPoint{5, -5}, HvPoint{-5, -5}}) {
    drag(40, 40);
    axis.Drag(beyond);
    EXPECT_EQ(axis.Aspect(), 0.0f);
    drag(40, 20);
    axis.Drag(beyond);
    EXPECT_EQ(axis.Aspect(), 1.0f);
    drag(20, 40);
    axis.Drag(beyond);
    EXPECT_EQ(axis.Aspect(), -1.0f);
  }
}

TEST_F(HvT2DAxisDrag, OfTheDotTakesTheScalesOfTheAxesOut) {
  axis.SetAxisScale(2, 1);
  press(axis.AspectHandlePos(), 64);
  drag(40, 40);
  EXPECT_EQ(axis.Aspect(), -0.5f);
  drag(40, 5);
  EXPECT_EQ(axis.Aspect(), 0.75f);
}

TEST_F(HvT2DAxisDrag, OfTheDotUndoesTheRotation) {
  axis.SetRotation(90);
  const HvPoint dot = axis.AspectHandlePos();
  press({-dot.y, dot.x}, 64);
  drag(-20, 40);
  EXPECT_FLOAT_EQ(axis.Aspect(), 0.5f);
}

TEST_F(HvT2DAxisDrag, OfTheDotOntoTheCentreLeavesBothAxesWhole) {
  press(axis.AspectHandlePos(), 64);
  drag(0, 0);
  EXPECT_TRUE(std::isnan(axis.Aspect()));
  EXPECT_EQ(axis.XAspect(), 1.0f);
  EXPECT_EQ(axis.YAspect(), 1.0f);
  EXPECT_EQ(axis.Box(), currentBox());
  EXPECT_TRUE(std::isfinite(axis.Size().x));
  drag(40, 20);
  EXPECT_EQ(axis.Aspect(), 0.5f);
}

TEST_F(HvT2DAxisDrag, FollowsTheHandleScale) {
  axis.SetHandleScale(2);
  press({74, 74}, 4);
  drag(148, 0);
  EXPECT_EQ(axis.Scale(), 2.0f);
  axis.Release();
  press({148, 10}, 8);
  drag(74, 10);
  EXPECT_EQ(axis.AxisScale().x, 0.5f);
  axis.Release();
  press({10, 148}, 16);
  drag(10, 74);
  EXPECT_EQ(axis.AxisScale().y, 0.5f);
}

TEST_F(HvT2DAxisDrag, PassesFromHoverToPressedAndBack) {
  axis.Pick({0, 0}, {2, 2});
  EXPECT_EQ(axis.Enter({0, 0}), 1);
  EXPECT_TRUE(axis.IsHovered());
  EXPECT_EQ(axis.Active(), 3u);
  EXPECT_EQ(axis.Leave(), 1);
  EXPECT_FALSE(axis.IsHovered());
  EXPECT_EQ(axis.Active(), 0u);
  press({0, 0}, 3);
  EXPECT_TRUE(axis.IsPressed());
  drag(5, 5);
  EXPECT_EQ(axis.Active(), 3u);
}

TEST_F(HvT2DAxisDrag, NotifiesTheParentOfEachMove) {
  HvTGroup parent("parent");
  axis.SetParent(&parent);
  press({0, 0}, 3);
  drag(10, 20);
  EXPECT_EQ(parent.Box(), axis.Box());
  EXPECT_EQ(parent.Origin(), (HvPoint{-27, -17}));
  axis.Detach();
}

}  // namespace
}  // namespace vblur
