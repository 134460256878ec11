// The OpenGL calls of the axis control and its group, compared with golden/.
#include <string>

#include <gtest/gtest.h>

#include "overlay/Drawing.h"
#include "overlay/HvT2DAxisGroup.h"
#include "tests/overlay/DrawnStates.h"
#include "tests/support/gl/GlRecording.h"

namespace vblur {
namespace {

using test::DrawnStates;

std::string maskText(std::uint32_t mask) {
  return "mask " + std::to_string(mask);
}

// Draws a square under the current matrix.
class PaintedSquare : public HvTObject {
 public:
  explicit PaintedSquare(float side) : HvTObject("square"), side_(side) { StoreBox({0, 0}, {side, side}); }
  ~PaintedSquare() override { Detach(); }

  HvPick Pick(HvPoint, HvPoint) override { return {}; }
  void Draw() override {
    DrawRectFilled(0, 0, side_, side_);
    depthWhenDrawn = OverlayMatrixStack::Get().Depth();
    topWhenDrawn = OverlayMatrixStack::Get().Top();
  }
  std::int32_t Drag(HvPoint) override { return 0; }

  int depthWhenDrawn = -1;
  Matrix3 topWhenDrawn;

 private:
  float side_;
};

TEST(HvT2DAxisDraw, PaintsTheHandlesOfItsMask) {
  DrawnStates states;
  for (const std::uint32_t mask : {0u, 1u, 2u, 3u, 4u, 8u, 16u, 32u, 64u, 68u, 127u}) {
    HvT2DAxis axis("axis", mask);
    states.draw(axis, maskText(mask) + ", idle");
  }
  EXPECT_TRUE(states.match("HvT2DAxis_masks"));
}

// Each mask with that handle active.
void drawActive(DrawnStates& states, std::uint32_t mask, std::uint32_t handle) {
  HvT2DAxis axis("axis", mask);
  const std::string what = maskText(mask) + ", active " + std::to_string(handle);
  axis.SetActiveHandle(handle);
  states.draw(axis, what);
  axis.Enter({0, 0});
  states.draw(axis, what + ", hovered");
  axis.Press({0, 0});
  states.draw(axis, what + ", hovered and pressed");
  axis.HvTObject::Leave();
  EXPECT_EQ(axis.Active(), handle);
  states.draw(axis, what + ", pressed");
}

TEST(HvT2DAxisDraw, ShowsThePenOnItsActiveHandleAlone) {
  DrawCircleOutline(0, 0, 0);
  test::GlRecording recording;
  HvT2DAxis axis("axis", 127);
  const auto drawn = [&] {
    recording.clear();
    axis.Draw();
    return recording.text();
  };
  const std::string idle = drawn();
  axis.Enter({0, 0});
  EXPECT_EQ(drawn(), idle);
  axis.SetActiveHandle(HvT2DAxis::kScaleX);
  EXPECT_NE(drawn(), idle);
  axis.Press({0, 0});
  EXPECT_NE(drawn(), idle);
  axis.SetActiveHandle(0);
  EXPECT_EQ(drawn(), idle);
  axis.Leave();
  EXPECT_EQ(drawn(), idle);
  ReleaseOverlayQuadric();
}

TEST(HvT2DAxisDraw, PaintsActiveArrows) {
  DrawnStates states;
  drawActive(states, 3, 1);
  drawActive(states, 3, 2);
  drawActive(states, 3, 3);
  EXPECT_TRUE(states.match("HvT2DAxis_active_arrows"));
}

TEST(HvT2DAxisDraw, PaintsTheActiveBox) {
  DrawnStates states;
  drawActive(states, 28, 4);
  drawActive(states, 28, 8);
  drawActive(states, 28, 16);
  EXPECT_TRUE(states.match("HvT2DAxis_active_box"));
}

TEST(HvT2DAxisDraw, PaintsTheActiveArc) {
  DrawnStates states;
  drawActive(states, 32, 32);
  EXPECT_TRUE(states.match("HvT2DAxis_active_arc"));
}

TEST(HvT2DAxisDraw, PaintsTheActiveDot) {
  DrawnStates states;
  drawActive(states, 64, 64);
  EXPECT_TRUE(states.match("HvT2DAxis_active_dot"));
}

TEST(HvT2DAxisDraw, PaintsByItsFields) {
  DrawnStates states;
  HvT2DAxis axis("axis", 127);
  axis.SetCentre(100, 200);
  axis.SetRotation(30);
  axis.SetScale(0.5f);
  axis.SetAxisScale(6, 16);
  axis.SetAspect(-0.5f);
  states.draw(axis, "moved, turned and scaled");
  axis.SetHandleScale(2);
  states.draw(axis, "with larger handles");
  HvT2DAxis sideways("axis", 1);
  sideways.SetActiveHandle(1);
  sideways.Press({0, 0});
  sideways.Drag({7, 9});
  states.draw(sideways, "moved along x");
  HvT2DAxis upwards("axis", 34);
  upwards.SetActiveHandle(2);
  upwards.Press({0, 0});
  upwards.Drag({7, 9});
  upwards.SetRotation(45);
  states.draw(upwards, "moved along y and turned");
  for (const std::uint32_t mask : {0u, 1u, 2u}) {
    HvT2DAxis moved("axis", mask);
    moved.SetAxisFlags(HvT2DAxis::kAsIfAll);
    moved.SetCentre(10, 20);
    moved.SetAxisFlags(0);
    states.draw(moved, maskText(mask) + ", about a centre that it does not move both ways");
  }
  EXPECT_TRUE(states.match("HvT2DAxis_fields"));
}

TEST(HvT2DAxisDraw, PaintsByItsFlags) {
  DrawnStates states;
  SetOverlayFont(1000);
  HvT2DAxis axis("Src Centre", 3);
  axis.SetAxisFlags(HvT2DAxis::kDrawName);
  states.draw(axis, "with its name");
  axis.SetAxisFlags(HvT2DAxis::kNoTranslation);
  states.draw(axis, "without arrows");
  HvT2DAxis nameless(nullptr, 0);
  nameless.SetAxisFlags(HvT2DAxis::kDrawName | HvT2DAxis::kAsIfAll);
  states.draw(nameless, "without a name, as if it had all handles");
  HvT2DAxis below("below", 0);
  below.UseStackMatrix(true);
  OverlayMatrixStack::Get().Push();
  OverlayMatrixStack::Get().Multiply({{2, 3, 0, 4, 5, 0, 6, 7, 1}});
  states.draw(below, "under the stack's matrix");
  OverlayMatrixStack::Get().Pop();
  SetOverlayFont(0);
  EXPECT_TRUE(states.match("HvT2DAxis_flags"));
}

// A bar of an arrow along x.
std::string Bar(int from, int to) {
  return "glColor3f(0.7, 0, 0)\nglBegin(GL_LINE_STRIP)\nglVertex2f(" + std::to_string(from) + ", 0)\nglVertex2f(" +
         std::to_string(to) + ", 0)\nglEnd()\n";
}

// An arrow's head with its tip on the x axis, filled and outlined.
std::string Head(int tip, int degrees) {
  const std::string corners = "glVertex2f(-10, 1.5)\nglVertex2f(0, 0)\nglVertex2f(-10, -1.5)\nglEnd()\n";
  return "glPushMatrix()\nglTranslatef(" + std::to_string(tip) +
         ", 0, 0)\nglColor3f(0.7, 0, 0)\nglPushMatrix()\nglRotatef(" + std::to_string(degrees) +
         ", 0, 0, 1)\nglBegin(GL_TRIANGLES)\n" + corners + "glColor3f(0.7, 0, 0)\nglBegin(GL_LINE_LOOP)\n" + corners +
         "glPopMatrix()\nglPopMatrix()\n";
}

TEST(HvT2DAxisDraw, PaintsOneArrowInTheseCalls) {
  test::GlRecording recording;
  HvT2DAxis axis("axis", HvT2DAxis::kTranslateX);
  axis.Draw();
  EXPECT_EQ(recording.text(), R"(glIsEnabled(GL_BLEND) -> 0
glGetIntegerv(GL_BLEND_SRC) -> GL_ONE
glGetIntegerv(GL_BLEND_DST) -> GL_ZERO
glEnable(GL_BLEND)
glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)
glIsEnabled(GL_POINT_SMOOTH) -> 0
glEnable(GL_POINT_SMOOTH)
glIsEnabled(GL_LINE_SMOOTH) -> 0
glEnable(GL_LINE_SMOOTH)
glIsEnabled(GL_POLYGON_SMOOTH) -> 0
glEnable(GL_POLYGON_SMOOTH)
glPushMatrix()
glTranslatef(0, 0, 0)
glPushMatrix()
glPushMatrix()
glPopMatrix()
)" + Bar(-34, -3) + Bar(3, 34) + Head(-37, 180) +
                                  Head(37, 0) +
                                  R"(glPopMatrix()
glPopMatrix()
glBlendFunc(GL_ONE, GL_ZERO)
glDisable(GL_BLEND)
glDisable(GL_POINT_SMOOTH)
glDisable(GL_LINE_SMOOTH)
glDisable(GL_POLYGON_SMOOTH)
)");
}

TEST(HvT2DAxisDraw, TipNamesWhatTheHandleDoes) {
  test::GlRecording recording;
  SetOverlayFont(1000);
  HvT2DAxis axis("axis", 127);
  axis.SetTip("ring");
  const auto tipOf = [&](std::uint32_t active) {
    axis.SetActiveHandle(active);
    recording.clear();
    axis.DrawTip({10, 20});
    return recording.text();
  };
  const auto shown = [](const std::string& text) {
    const std::string call = "glPushAttrib(GL_LIST_BIT)\nglListBase(968)\nglCallLists(" + std::to_string(text.size()) +
                             ", GL_UNSIGNED_BYTE, \"" + text + "\")\nglPopAttrib()\n";
    return "glColor3f(0.1, 0.1, 0.1)\nglRasterPos2f(10, 20)\n" + call + "glColor3f(1, 1, 0)\nglRasterPos2f(11, 21)\n" +
           call;
  };
  for (const std::uint32_t active : {1u, 2u, 3u})
    EXPECT_EQ(tipOf(active), shown("Translates the ring.")) << active;
  for (const std::uint32_t active : {4u, 8u, 16u, 24u})
    EXPECT_EQ(tipOf(active), shown("Scales the ring.")) << active;
  EXPECT_EQ(tipOf(32), shown("Rotates the ring."));
  EXPECT_EQ(tipOf(64), shown("Aspects the ring."));
  for (const std::uint32_t active : {0u, 5u, 12u, 28u, 33u, 96u, 127u, 128u})
    EXPECT_EQ(tipOf(active), "") << active;
  axis.SetTip(std::string(400, 'x').c_str());
  EXPECT_EQ(tipOf(32), shown("Rotates the " + std::string(243, 'x')));
  axis.SetTip(nullptr);
  EXPECT_EQ(tipOf(32), "");
  axis.SetTip("ring");
  axis.Press({0, 0});
  EXPECT_EQ(tipOf(32), "");
  SetOverlayFont(0);
}

TEST(HvT2DAxisDraw, GroupPaintsItsAxisThenTheSecondThenTheFirst) {
  DrawnStates states;
  HvT2DAxisGroup group("group", 3);
  PaintedSquare first(1);
  PaintedSquare second(2);
  PaintedSquare hidden(3);
  first.SetParent(&group);
  hidden.SetParent(&group);
  hidden.SetVisibility(HvTObject::kPickable);
  group.AddIntoSecond(true);
  second.SetParent(&group);
  group.SetCentre(10, 20);
  group.SetScale(2);
  states.draw(group, "with its axis");
  EXPECT_EQ(first.depthWhenDrawn, 0);
  EXPECT_EQ(second.depthWhenDrawn, 1);
  EXPECT_EQ(second.topWhenDrawn.Map({1, 1}), (HvPoint{12, 22}));
  EXPECT_EQ(hidden.depthWhenDrawn, -1);
  OverlayMatrixStack::Get().Push();
  OverlayMatrixStack::Get().Multiply({{2, 0, 0, 0, 3, 0, 4, 5, 1}});
  group.DrawAxisUnderStackMatrix(true);
  states.draw(group, "with its axis under the stack's matrix");
  EXPECT_EQ(second.depthWhenDrawn, 2);
  EXPECT_EQ(second.topWhenDrawn.Map({1, 1}), (HvPoint{28, 71}));
  OverlayMatrixStack::Get().Pop();
  group.ShowOwnAxis(false);
  states.draw(group, "without its axis");
  EXPECT_EQ(OverlayMatrixStack::Get().Depth(), 0);
  EXPECT_TRUE(states.match("HvT2DAxisGroup"));
}

TEST(HvT2DAxisDraw, GroupLeadsChildrenByItsMask) {
  DrawnStates states;
  const auto draw = [&](std::uint32_t mask, std::uint32_t axisFlags) {
    HvT2DAxisGroup group("group", mask);
    PaintedSquare square(1);
    square.SetParent(&group);
    group.ShowOwnAxis(false);
    // Lets SetCentre act with every mask.
    group.SetAxisFlags(HvT2DAxis::kAsIfAll);
    group.SetCentre(10, 20);
    group.SetScale(2);
    group.SetAxisScale(3, 5);
    group.SetRotation(30);
    group.SetAspect(0.5f);
    group.SetAxisFlags(axisFlags);
    states.draw(group, maskText(mask) + (axisFlags != 0 ? ", as if all" : ""));
  };
  for (const std::uint32_t mask : {0u, 1u, 2u, 3u, 4u, 8u, 16u, 32u, 64u, 127u})
    draw(mask, 0);
  draw(0, HvT2DAxis::kAsIfAll);
  EXPECT_TRUE(states.match("HvT2DAxisGroup_masks"));
}

}  // namespace
}  // namespace vblur
