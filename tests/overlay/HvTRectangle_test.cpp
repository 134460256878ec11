#include "overlay/HvTRectangle.h"

#include <gtest/gtest.h>

#include "overlay/HvTGroup.h"
#include "overlay/HvTManager.h"
#include "tests/overlay/DrawnStates.h"
#include "tests/overlay/Hearer.h"

namespace vblur {
namespace {

class HvTRectangleOnItsOwn : public ::testing::Test {
 protected:
  // 0 for a miss.
  std::uint32_t edgesAt(float x, float y, HvPoint tolerance = {3, 2}) {
    const HvPick pick = rectangle.Pick({x, y}, tolerance);
    EXPECT_EQ(pick.Object() != nullptr, rectangle.EdgeMask() != 0);
    EXPECT_EQ(rectangle.Target(), pick.Object());
    return rectangle.EdgeMask();
  }
  HvRectangleSides dragged(HvPoint from, HvPoint to) {
    EXPECT_NE(edgesAt(from.x, from.y), 0u);
    rectangle.Press(from);
    rectangle.Drag(to);
    rectangle.Release();
    hearer.take();
    return rectangle.Sides();
  }

  HvTRectangle rectangle{"Box", 0, 0, 200, 100};
  test::Hearer hearer{rectangle};
};

TEST_F(HvTRectangleOnItsOwn, TakesTwoCorners) {
  EXPECT_STREQ(rectangle.Name(), "Box");
  EXPECT_EQ(rectangle.Sides(), (HvRectangleSides{0, 0, 200, 100}));
  EXPECT_EQ(rectangle.Colour(), (HvColour{0.7f, 0, 0}));
  EXPECT_EQ(rectangle.EdgeMask(), 0u);
  EXPECT_FALSE(rectangle.KeepsWithinLimits());
  EXPECT_EQ(rectangle.Limits(), (HvBox{0, 0, 0, 0}));
  EXPECT_EQ(rectangle.Box(), (HvBox{0, 200, 0, 100}));
}

TEST_F(HvTRectangleOnItsOwn, SortsItsSidesButNotItsOwnBox) {
  rectangle.SetBox(50, 40, -10, 60);
  EXPECT_EQ(rectangle.Sides(), (HvRectangleSides{-10, 40, 50, 60}));
  EXPECT_EQ(rectangle.Origin(), (HvPoint{50, 40}));
  EXPECT_EQ(rectangle.Size(), (HvPoint{-60, 20}));
  rectangle.SetBox(0, 9, 5, -9);
  EXPECT_EQ(rectangle.Sides(), (HvRectangleSides{0, -9, 5, 9}));
  EXPECT_EQ(rectangle.Size(), (HvPoint{5, -18}));
}

TEST_F(HvTRectangleOnItsOwn, NotifiesItsParent) {
  HvTGroup group("g");
  rectangle.SetParent(&group);
  rectangle.SetBox(-5, -6, 7, 8);
  EXPECT_EQ(group.Box(), (HvBox{-5, 7, -6, 8}));
}

TEST_F(HvTRectangleOnItsOwn, KeepsEachSideWithinItsLimits) {
  rectangle.SetLimits(10, 20, 110, 60);
  rectangle.SetBox(-50, 70, 300, 30);
  EXPECT_EQ(rectangle.Sides(), (HvRectangleSides{-50, 30, 300, 70})) << "not before they hold";
  rectangle.KeepWithinLimits(true);
  rectangle.SetBox(-50, 70, 300, 30);
  EXPECT_EQ(rectangle.Sides(), (HvRectangleSides{10, 30, 110, 60}));
  EXPECT_EQ(rectangle.Box(), (HvBox{-50, 300, 70, 30})) << "as given";
  rectangle.SetBox(200, 0, 300, 1);
  EXPECT_EQ(rectangle.Sides(), (HvRectangleSides{110, 20, 110, 20}));
  // With crossed limits the minimum is tested first.
  rectangle.SetLimits(100, 0, 50, 100);
  rectangle.SetBox(70, 10, 120, 20);
  EXPECT_EQ(rectangle.Sides(), (HvRectangleSides{100, 10, 50, 20}));
}

TEST_F(HvTRectangleOnItsOwn, IsHitOnItsEdges) {
  EXPECT_EQ(edgesAt(1, 50), 1u);
  EXPECT_EQ(edgesAt(199, 50), 2u);
  EXPECT_EQ(edgesAt(30, -1), 4u);
  EXPECT_EQ(edgesAt(30, 101), 8u);
  EXPECT_EQ(edgesAt(50, 50), 0u);
}

TEST_F(HvTRectangleOnItsOwn, IsHitOnTwoEdgesAtACorner) {
  EXPECT_EQ(edgesAt(0, 0), 5u);
  EXPECT_EQ(edgesAt(2, 101), 9u);
  EXPECT_EQ(edgesAt(200, -1), 6u);
  EXPECT_EQ(edgesAt(202, 101), 10u);
}

TEST_F(HvTRectangleOnItsOwn, NeedsTheToleranceStrictly) {
  EXPECT_EQ(edgesAt(-2.99f, 50), 1u);
  EXPECT_EQ(edgesAt(-3, 50), 0u);
  EXPECT_EQ(edgesAt(3, 50), 0u);
  EXPECT_EQ(edgesAt(50, 101.99f), 8u);
  EXPECT_EQ(edgesAt(50, 102), 0u);
  EXPECT_EQ(edgesAt(0, -1.99f), 5u);
  EXPECT_EQ(edgesAt(0, -2), 0u) << "out of the range of left, and too far from bottom";
  EXPECT_EQ(edgesAt(-2.99f, 0), 5u);
  EXPECT_EQ(edgesAt(203, 0), 0u);
}

TEST_F(HvTRectangleOnItsOwn, PrefersLeftAndTopWhereEdgesMeet) {
  rectangle.SetBox(10, 10, 10, 10);
  EXPECT_EQ(edgesAt(10, 10), 9u);
}

TEST_F(HvTRectangleOnItsOwn, IsHitOnTheBarsOfItsCross) {
  EXPECT_EQ(edgesAt(100, 50), 48u);
  EXPECT_EQ(edgesAt(110, 50), 16u);
  EXPECT_EQ(edgesAt(100, 40), 32u);
  EXPECT_EQ(edgesAt(102.9f, 51.9f), 48u);
  EXPECT_EQ(edgesAt(122.9f, 50), 16u);
  EXPECT_EQ(edgesAt(123, 50), 0u);
  EXPECT_EQ(edgesAt(77, 50), 0u);
  // The x tolerance also extends the vertical bar.
  EXPECT_EQ(edgesAt(100, 72.9f), 32u);
  EXPECT_EQ(edgesAt(100, 73), 0u);
  EXPECT_EQ(edgesAt(103, 50), 16u);
  EXPECT_EQ(edgesAt(100, 52), 32u);
}

TEST_F(HvTRectangleOnItsOwn, HasNoBarsWhereThereIsAnEdge) {
  rectangle.SetBox(0, 0, 4, 100);
  EXPECT_EQ(edgesAt(2, 50), 1u);
}

TEST_F(HvTRectangleOnItsOwn, AsksForARepaintWithOtherEdges) {
  HvTManager manager;
  manager.AddObject(&rectangle);
  const auto asks = [&](float x, float y) {
    manager.Draw();
    edgesAt(x, y);
    return manager.WantsRepaint();
  };
  test::GlRecording recording;
  manager.EnableTips(false);
  EXPECT_TRUE(asks(0, 50));
  EXPECT_FALSE(asks(1, 60));
  EXPECT_TRUE(asks(200, 50));
  EXPECT_FALSE(asks(50, 50)) << "a miss asks for none";
  EXPECT_TRUE(asks(200, 50));
}

TEST_F(HvTRectangleOnItsOwn, KeepsItsEdgesBeyondALeave) {
  edgesAt(0, 50);
  rectangle.Enter({});
  rectangle.Leave();
  EXPECT_EQ(rectangle.EdgeMask(), 1u);
}

TEST_F(HvTRectangleOnItsOwn, SendsTheWholeOfADrag) {
  edgesAt(0, 50);
  hearer.whileHearing = [&] { EXPECT_FALSE(rectangle.IsPressed()); };
  EXPECT_EQ(rectangle.Press({1, 50}), 1);
  EXPECT_EQ(hearer.take(), "200 0; ");
  EXPECT_TRUE(rectangle.IsPressed());
  hearer.whileHearing = [&] { EXPECT_TRUE(rectangle.IsPressed()); };
  EXPECT_EQ(rectangle.Drag({1, 70}), 0) << "along its own edge";
  EXPECT_EQ(hearer.take(), "");
  EXPECT_EQ(rectangle.Drag({11, 70}), 1);
  EXPECT_EQ(hearer.take(), "201 0; ");
  EXPECT_EQ(rectangle.Sides(), (HvRectangleSides{10, 0, 200, 100}));
  EXPECT_EQ(rectangle.Box(), (HvBox{10, 200, 0, 100}));
  EXPECT_EQ(rectangle.Release(), 1);
  EXPECT_EQ(hearer.take(), "202 0; ");
  EXPECT_FALSE(rectangle.IsPressed());
}

TEST_F(HvTRectangleOnItsOwn, DragsEachEdge) {
  EXPECT_EQ(dragged({0, 50}, {-7, 90}), (HvRectangleSides{-7, 0, 200, 100}));
  EXPECT_EQ(dragged({200, 50}, {210, 90}), (HvRectangleSides{-7, 0, 210, 100}));
  EXPECT_EQ(dragged({50, 0}, {90, 5}), (HvRectangleSides{-7, 5, 210, 100}));
  EXPECT_EQ(dragged({50, 100}, {90, 80}), (HvRectangleSides{-7, 5, 210, 80}));
}

TEST_F(HvTRectangleOnItsOwn, DragsBothEdgesOfACorner) {
  EXPECT_EQ(dragged({0, 0}, {5, -6}), (HvRectangleSides{5, -6, 200, 100}));
  EXPECT_EQ(dragged({200, 100}, {150, 130}), (HvRectangleSides{5, -6, 150, 130}));
  EXPECT_EQ(dragged({5, 130}, {6, 131}), (HvRectangleSides{6, -6, 150, 131}));
  EXPECT_EQ(dragged({150, -6}, {151, -7}), (HvRectangleSides{6, -7, 151, 131}));
}

TEST_F(HvTRectangleOnItsOwn, PinsAnEdgeAtTheOneOpposite) {
  EXPECT_EQ(dragged({0, 50}, {900, 50}), (HvRectangleSides{200, 0, 200, 100}));
  // An empty box is still picked, by its left edge.
  EXPECT_EQ(edgesAt(200, 50), 1u);
  EXPECT_EQ(dragged({200, 50}, {20, 50}), (HvRectangleSides{20, 0, 200, 100}));
  EXPECT_EQ(dragged({200, 50}, {-900, 50}), (HvRectangleSides{20, 0, 20, 100}));
  rectangle.SetBox(0, 0, 200, 100);
  EXPECT_EQ(dragged({50, 0}, {50, 900}), (HvRectangleSides{0, 100, 200, 100}));
  rectangle.SetBox(0, 0, 200, 100);
  EXPECT_EQ(dragged({50, 100}, {50, -900}), (HvRectangleSides{0, 0, 200, 0}));
}

TEST_F(HvTRectangleOnItsOwn, CountsADragFromTheLastPosition) {
  edgesAt(0, 50);
  rectangle.Press({1, 50});
  rectangle.Drag({3, 50});
  rectangle.Drag({4, 50});
  EXPECT_EQ(rectangle.X0(), 3.0f);
  EXPECT_EQ(rectangle.Drag({4, 99}), 0);
  EXPECT_EQ(rectangle.Drag({0, 0}), 1);
  EXPECT_EQ(rectangle.X0(), -1.0f);
}

TEST_F(HvTRectangleOnItsOwn, MovesByItsBars) {
  EXPECT_EQ(dragged({110, 50}, {117, 90}), (HvRectangleSides{7, 0, 207, 100}));
  EXPECT_EQ(dragged({107, 60}, {900, 55}), (HvRectangleSides{7, -5, 207, 95}));
  EXPECT_EQ(dragged({107, 45}, {100, 50}), (HvRectangleSides{0, 0, 200, 100}));
}

TEST_F(HvTRectangleOnItsOwn, KeepsItsSizeAtALimit) {
  rectangle.SetLimits(-10, -20, 300, 110);
  rectangle.KeepWithinLimits(true);
  EXPECT_EQ(dragged({100, 50}, {0, -50}), (HvRectangleSides{-10, -20, 190, 80}));
  EXPECT_EQ(dragged({90, 30}, {1000, 1000}), (HvRectangleSides{100, 10, 300, 110}));
  edgesAt(200, 60);
  ASSERT_EQ(rectangle.EdgeMask(), 48u);
  rectangle.Press({200, 60});
  EXPECT_EQ(rectangle.Drag({210, 65}), 0) << "it cannot move on";
  EXPECT_EQ(hearer.take(), "200 0; ");
  EXPECT_EQ(rectangle.Drag({209, 65}), 1);
  EXPECT_EQ(rectangle.Sides(), (HvRectangleSides{99, 10, 299, 110}));
}

TEST_F(HvTRectangleOnItsOwn, SaysSoWhenAnEdgeIsHeldByALimit) {
  rectangle.SetLimits(0, 0, 200, 100);
  rectangle.KeepWithinLimits(true);
  edgesAt(0, 50);
  rectangle.Press({0, 50});
  hearer.take();
  EXPECT_EQ(rectangle.Drag({-5, 50}), 1);
  EXPECT_EQ(hearer.take(), "201 0; ");
  EXPECT_EQ(rectangle.Sides(), (HvRectangleSides{0, 0, 200, 100}));
  EXPECT_EQ(rectangle.Origin(), (HvPoint{-5, 0}));
}

TEST_F(HvTRectangleOnItsOwn, DragsByItsVirtualSetBox) {
  struct Snapping : HvTRectangle {
    using HvTRectangle::HvTRectangle;
    void SetBox(float, float, float, float) override { HvTRectangle::SetBox(1, 2, 3, 4); }
  };
  Snapping snapping("s", 0, 0, 50, 50);
  EXPECT_EQ(snapping.X1(), 50.0f);
  snapping.Pick({0, 25}, {3, 3});
  snapping.Press({0, 25});
  EXPECT_EQ(snapping.Drag({1, 25}), 1);
  EXPECT_EQ(snapping.Sides(), (HvRectangleSides{1, 2, 3, 4}));
}

struct EdgePoint {
  const char* name;
  HvPoint pos;
};

TEST_F(HvTRectangleOnItsOwn, DrawsEachState) {
  constexpr EdgePoint kPlaces[] = {
      {"nothing", {50, 20}},
      {"left", {0, 20}},
      {"right", {200, 20}},
      {"bottom", {50, 0}},
      {"top", {50, 100}},
      {"left and bottom", {0, 0}},
      {"right and top", {200, 100}},
      {"horizontal bar", {115, 50}},
      {"vertical bar", {100, 65}},
      {"both bars", {100, 50}},
  };
  test::DrawnStates states;
  states.draw(rectangle, "idle");
  for (const auto& [name, pos] : kPlaces) {
    edgesAt(pos.x, pos.y);
    rectangle.Enter(pos);
    states.draw(rectangle, std::string("hovered, on ") + name);
    rectangle.Leave();
    rectangle.Press(pos);
    states.draw(rectangle, std::string("pressed, on ") + name);
    rectangle.Release();
  }
  edgesAt(100, 50);
  states.draw(rectangle, "idle, left on both bars");
  rectangle.Press({});
  rectangle.Enter({});
  states.draw(rectangle, "hovered and pressed, on both bars");
  EXPECT_TRUE(states.match("HvTRectangle"));
}

}  // namespace
}  // namespace vblur
