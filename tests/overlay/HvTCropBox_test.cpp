#include "overlay/HvTCropBox.h"

#include <gtest/gtest.h>

#include "overlay/HvTGroup.h"
#include "overlay/HvTManager.h"
#include "tests/overlay/DrawnStates.h"
#include "tests/overlay/Hearer.h"

namespace vblur {
namespace {

// A frame of 400 x 300, cropped to 100..300 x 50..200.
class HvTCropBoxInAFrame : public ::testing::Test {
 protected:
  HvTCropBoxInAFrame() {
    crop.SetLimits(0, 0, 400, 300);
    crop.SetBox(100, 50, 300, 200);
  }
  std::uint32_t edgesAt(float x, float y) {
    const HvPick pick = crop.Pick({x, y}, {4, 3});
    EXPECT_EQ(pick.Object() != nullptr, crop.EdgeMask() != 0);
    EXPECT_EQ(crop.Target(), pick.Object());
    return crop.EdgeMask();
  }

  HvTCropBox crop{"Crop Box", 0, 0, 1, 1};
  test::Hearer hearer{crop};
};

TEST(HvTCropBox, KeepsWithinLimitsFromTheStart) {
  HvTCropBox crop("Crop Box", 0, 0, 1, 1);
  EXPECT_TRUE(crop.KeepsWithinLimits());
  EXPECT_EQ(crop.Sides(), (HvRectangleSides{0, 0, 1, 1}));
  EXPECT_EQ(crop.Box(), (HvBox{0, 1, 0, 1}));
  EXPECT_EQ(crop.Colour(), (HvColour{0.7f, 0, 0}));
}

TEST_F(HvTCropBoxInAFrame, IsAsLargeAsItsLimits) {
  EXPECT_EQ(crop.Sides(), (HvRectangleSides{100, 50, 300, 200}));
  EXPECT_EQ(crop.Box(), (HvBox{0, 400, 0, 300}));
  HvTGroup group("View Zero");
  crop.SetParent(&group);
  crop.SetLimits(-10, -20, 30, 40);
  crop.SetBox(30, 60, 0, -60);
  EXPECT_EQ(crop.Sides(), (HvRectangleSides{0, -20, 30, 40}));
  EXPECT_EQ(crop.Origin(), (HvPoint{-10, -20}));
  EXPECT_EQ(crop.Size(), (HvPoint{40, 60}));
  EXPECT_EQ(group.Box(), (HvBox{-10, 30, -20, 40}));
}

TEST_F(HvTCropBoxInAFrame, IsGrabbedAnywhereAlongItsLines) {
  EXPECT_EQ(edgesAt(100, 120), 1u);
  EXPECT_EQ(edgesAt(100, 290), 1u) << "outside of the rectangle";
  EXPECT_EQ(edgesAt(300, 10), 2u);
  EXPECT_EQ(edgesAt(390, 50), 4u);
  EXPECT_EQ(edgesAt(5, 200), 8u);
  EXPECT_EQ(edgesAt(100, 200), 9u);
  EXPECT_EQ(edgesAt(300, 50), 6u);
}

TEST_F(HvTCropBoxInAFrame, HasNoCross) {
  EXPECT_EQ(edgesAt(200, 125), 0u);
  EXPECT_EQ(edgesAt(210, 125), 0u);
}

TEST_F(HvTCropBoxInAFrame, EndsWithItsLimits) {
  EXPECT_EQ(edgesAt(100, 302.9f), 1u);
  EXPECT_EQ(edgesAt(100, 303), 0u);
  EXPECT_EQ(edgesAt(100, -2.9f), 1u);
  EXPECT_EQ(edgesAt(100, -3), 0u);
  EXPECT_EQ(edgesAt(-3.9f, 200), 8u);
  EXPECT_EQ(edgesAt(-4, 200), 0u);
  EXPECT_EQ(edgesAt(403.9f, 200), 8u);
  EXPECT_EQ(edgesAt(404, 200), 0u);
}

TEST_F(HvTCropBoxInAFrame, AsksForARepaintWithOtherEdges) {
  test::GlRecording recording;
  HvTManager manager;
  manager.AddObject(&crop);
  manager.Draw();
  edgesAt(100, 290);
  EXPECT_TRUE(manager.WantsRepaint());
  manager.Draw();
  edgesAt(100, 10);
  EXPECT_FALSE(manager.WantsRepaint());
  edgesAt(20, 20);
  EXPECT_FALSE(manager.WantsRepaint());
  EXPECT_EQ(crop.EdgeMask(), 0u);
}

TEST_F(HvTCropBoxInAFrame, DragsWithinItsLimits) {
  edgesAt(100, 250);
  crop.Press({100, 250});
  EXPECT_EQ(crop.Drag({-40, 250}), 1);
  EXPECT_EQ(crop.Sides(), (HvRectangleSides{0, 50, 300, 200}));
  EXPECT_EQ(crop.Drag({900, 250}), 1);
  EXPECT_EQ(crop.Sides(), (HvRectangleSides{300, 50, 300, 200})) << "pinned at the right line";
  crop.Release();
  EXPECT_EQ(hearer.take(), "200 0; 201 0; 201 0; 202 0; ");
  EXPECT_EQ(crop.Box(), (HvBox{0, 400, 0, 300}));
}

TEST_F(HvTCropBoxInAFrame, DragsACornerUnderAManager) {
  HvTGroup zero("View Zero");
  HvTManager manager;
  zero.SetGroupFlags(0);
  manager.AddObject(&zero);
  crop.SetParent(&zero);
  const auto pen = [&](std::uint32_t id, float x, float y) { manager.PostMessage(HvMessage::OfPosition(id, {x, y})); };
  pen(kPenMoved, 300, 200);
  pen(kPenDown, 301, 201);
  pen(kPenMoved, 341, 181);
  pen(kPenUp, 341, 181);
  EXPECT_EQ(crop.Sides(), (HvRectangleSides{100, 50, 340, 180}));
  EXPECT_EQ(hearer.take(), "200 0; 201 0; 202 0; ");
  EXPECT_EQ(crop.EdgeMask(), 10u);
}

TEST_F(HvTCropBoxInAFrame, DrawsEachState) {
  constexpr std::pair<const char*, HvPoint> kPlaces[] = {
      {"nothing", {20, 20}},
      {"left", {100, 20}},
      {"right", {300, 20}},
      {"bottom", {20, 50}},
      {"top", {20, 200}},
      {"left and bottom", {100, 50}},
      {"right and bottom", {300, 50}},
      {"left and top", {100, 200}},
      {"right and top", {300, 200}},
  };
  test::DrawnStates states;
  states.draw(crop, "idle");
  for (const auto& [name, pos] : kPlaces) {
    edgesAt(pos.x, pos.y);
    crop.Enter(pos);
    states.draw(crop, std::string("hovered, on ") + name);
    crop.Leave();
    crop.Press(pos);
    states.draw(crop, std::string("pressed, on ") + name);
    crop.Release();
  }
  states.draw(crop, "idle, left on right and top");
  EXPECT_TRUE(states.match("HvTCropBox"));
}

}  // namespace
}  // namespace vblur
