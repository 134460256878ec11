// Bindings and tool may be destroyed in either order.
#include "overlay/HvTDsObject.h"

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

TEST(HvTDsObject, BindingsGoBeforeTheTool) {
  test::ToolWorld world;
  {
    HvTDsCircle circle;
    HvTDsCrop crop;
    circle.SetParent(&world.tool->FrameCentre());
    crop.SetParent(&world.tool->ViewZero());
    circle.BindProperties(kBlurId, kAspectId);
    crop.BindProperties(kLeftId, kRightId, kBottomId, kTopId);
    world.tool->AddDsObject(&circle);
    world.tool->AddDsObject(&crop);
    world.PenMove(210.0, 100.0);
    EXPECT_EQ(world.tool->Hover(), &circle);
    world.PenDown(210.0, 100.0);
  }
  EXPECT_EQ(world.tool->Hover(), nullptr);
  world.PenMove(220.0, 100.0);
  world.PenUp(220.0, 100.0);
  world.tool->OnOnTimeChange(3.0);
  EXPECT_TRUE(world.theOperator->writes.empty());
}

TEST(HvTDsObject, BindingsOutliveTheTool) {
  HvTDsCircle circle;
  {
    test::ToolWorld world;
    circle.SetParent(&world.tool->FrameCentre());
    circle.BindProperties(kBlurId, kAspectId);
    world.tool->AddDsObject(&circle);
  }
  EXPECT_EQ(circle.Tool(), nullptr);
  EXPECT_EQ(circle.Parent(), nullptr);
  circle.Commit();
  circle.Refresh();
}

}  // namespace
}  // namespace vblur
