#include "overlay/Drawing.h"

#include <limits>

#include <GL/gl.h>
#include <gtest/gtest.h>

#include "tests/support/gl/GlRecording.h"

namespace vblur {
namespace {

constexpr HvColour kDrawA{1, 0, 0};
constexpr HvColour kDrawB{0, 0.5f, 1};

class Drawing : public ::testing::Test {
 protected:
  void SetUp() override {
    ReleaseOverlayQuadric();
    SetOverlayFont(0);
    recording.start();
  }
  void TearDown() override {
    EXPECT_EQ(recording.matrixDepth(), 0);
    EXPECT_EQ(recording.attributeDepth(), 0);
    EXPECT_FALSE(recording.isInsideBegin());
    SetOverlayFont(0);
    ReleaseOverlayQuadric();
  }
  // With the quadric created.
  void haveQuadric() {
    DrawCircleOutline(0, 0, 0);
    recording.clear();
  }

  test::GlRecording recording;
};

TEST_F(Drawing, SetsAColour) {
  SetGlColour({0.1f, 0.2f, 1});
  EXPECT_EQ(recording.text(), "glColor3f(0.1, 0.2, 1)\n");
}

TEST_F(Drawing, DrawsALine) {
  DrawLine(1, -2.5f, 0.1f, 4);
  EXPECT_EQ(recording.text(), R"(glBegin(GL_LINE_STRIP)
glVertex2f(1, -2.5)
glVertex2f(0.1, 4)
glEnd()
)");
}

TEST_F(Drawing, InterlocksTheDashesOfALine) {
  DrawDashedLine(0, 1, 2, 3, kDrawA, kDrawB);
  EXPECT_EQ(recording.text(), R"(glGetIntegerv(GL_LINE_STIPPLE_PATTERN) -> 0xffff
glGetIntegerv(GL_LINE_STIPPLE_REPEAT) -> 1
glLineStipple(1, 0xf0f)
glColor3f(1, 0, 0)
glBegin(GL_LINE_STRIP)
glVertex2f(0, 1)
glVertex2f(2, 3)
glEnd()
glLineStipple(1, 0xf0f0)
glColor3f(0, 0.5, 1)
glBegin(GL_LINE_STRIP)
glVertex2f(0, 1)
glVertex2f(2, 3)
glEnd()
glLineStipple(1, 0xffff)
)");
}

TEST_F(Drawing, RestoresTheStippleThatWasSet) {
  glLineStipple(3, 0x00FF);
  DrawDashedLine(0, 1, 2, 3, kDrawA, kDrawB);
  EXPECT_EQ(recording.lines().back(), "glLineStipple(3, 0xff)");
  glLineStipple(2, 0x0F00);
  DrawDashedCircle(0, 0, 1, kDrawA, kDrawB);
  EXPECT_EQ(recording.lines().back(), "glLineStipple(2, 0xf00)");
}

TEST_F(Drawing, FillsARectangle) {
  DrawRectFilled(1, 2, 3, 4);
  EXPECT_EQ(recording.text(), "glRectf(1, 2, 3, 4)\n");
}

TEST_F(Drawing, OutlinesARectangle) {
  DrawRectOutline(1, 2, 3, 4);
  EXPECT_EQ(recording.text(), R"(glBegin(GL_LINE_LOOP)
glVertex2f(1, 2)
glVertex2f(3, 2)
glVertex2f(3, 4)
glVertex2f(1, 4)
glEnd()
)");
}

TEST_F(Drawing, MakesTheQuadricWithTheFirstCircle) {
  DrawCircleOutline(3, 4, 5.5f);
  EXPECT_EQ(recording.text(), R"(gluNewQuadric() -> quadric
gluQuadricNormals(quadric, GLU_NONE)
glPushMatrix()
glTranslatef(3, 4, 0)
gluQuadricDrawStyle(quadric, GLU_LINE)
gluDisk(quadric, 5.5, 5.5, 180, 1)
glPopMatrix()
)");
  recording.clear();
  DrawFilledDisc(-1, 2, 0.25f);
  EXPECT_EQ(recording.text(), R"(glPushMatrix()
glTranslatef(-1, 2, 0)
gluQuadricDrawStyle(quadric, GLU_FILL)
gluDisk(quadric, 0, 0.25, 180, 1)
glPopMatrix()
)");
  EXPECT_EQ(recording.liveQuadrics(), 1);
}

TEST_F(Drawing, ReleasesTheQuadric) {
  haveQuadric();
  ReleaseOverlayQuadric();
  EXPECT_EQ(recording.text(), "gluDeleteQuadric(quadric)\n");
  EXPECT_EQ(recording.liveQuadrics(), 0);
  recording.clear();
  ReleaseOverlayQuadric();
  EXPECT_EQ(recording.text(), "");
  DrawFilledDisc(0, 0, 1);
  EXPECT_EQ(recording.lines().front(), "gluNewQuadric() -> quadric");
}

TEST_F(Drawing, DrawsNoCirclesWithoutAQuadricAndTriesAgain) {
  recording.faults().noQuadric = true;
  DrawCircleOutline(0, 0, 5);
  DrawFilledDisc(0, 0, 5);
  DrawArc(0, 0, 5, 0, 90);
  EXPECT_EQ(recording.text(), R"(gluNewQuadric() -> null
gluNewQuadric() -> null
gluNewQuadric() -> null
)");
  recording.faults().noQuadric = false;
  recording.clear();
  DrawCircleOutline(0, 0, 5);
  EXPECT_EQ(recording.lines().size(), 7u);
}

TEST_F(Drawing, DrawsNothingRoundOfNoRadius) {
  haveQuadric();
  for (const float r : {0.0f, -1.0f, std::numeric_limits<float>::quiet_NaN()}) {
    DrawCircleOutline(0, 0, r);
    DrawFilledDisc(0, 0, r);
    DrawArc(0, 0, r, 0, 90);
  }
  EXPECT_EQ(recording.text(), "");
}

TEST_F(Drawing, DrawsAnArcAnticlockwiseFromX) {
  haveQuadric();
  DrawArc(1, 2, 32, -45, 45);
  EXPECT_EQ(recording.text(), R"(glPushMatrix()
glTranslatef(1, 2, 0)
gluQuadricDrawStyle(quadric, GLU_LINE)
gluPartialDisk(quadric, 32, 32, 360, 1, 135, -90)
glPopMatrix()
)");
}

TEST_F(Drawing, InterlocksTheDashesOfAnArc) {
  haveQuadric();
  DrawDashedArc(0, 0, 8, 0, 90, kDrawA, kDrawB);
  EXPECT_EQ(recording.text(), R"(glGetIntegerv(GL_LINE_STIPPLE_PATTERN) -> 0xffff
glGetIntegerv(GL_LINE_STIPPLE_REPEAT) -> 1
glLineStipple(1, 0xf0f)
glColor3f(1, 0, 0)
glPushMatrix()
glTranslatef(0, 0, 0)
gluQuadricDrawStyle(quadric, GLU_LINE)
gluPartialDisk(quadric, 8, 8, 360, 1, 90, -90)
glPopMatrix()
glLineStipple(1, 0xf0f0)
glColor3f(0, 0.5, 1)
glPushMatrix()
glTranslatef(0, 0, 0)
gluQuadricDrawStyle(quadric, GLU_LINE)
gluPartialDisk(quadric, 8, 8, 360, 1, 90, -90)
glPopMatrix()
glLineStipple(1, 0xffff)
)");
}

TEST_F(Drawing, LaysAPlainCircleUnderADashedOne) {
  haveQuadric();
  DrawDashedCircle(1, 2, 3, kDrawA, kDrawB);
  const std::string circle = R"(glPushMatrix()
glTranslatef(1, 2, 0)
gluQuadricDrawStyle(quadric, GLU_LINE)
gluDisk(quadric, 3, 3, 180, 1)
glPopMatrix()
)";
  EXPECT_EQ(recording.text(),
            "glGetIntegerv(GL_LINE_STIPPLE_PATTERN) -> 0xffff\nglGetIntegerv(GL_LINE_STIPPLE_REPEAT) -> 1\n" + circle +
                "glLineStipple(1, 0xf0f)\nglColor3f(1, 0, 0)\n" + circle +
                "glLineStipple(1, 0xf0f0)\nglColor3f(0, 0.5, 1)\n" + circle + "glLineStipple(1, 0xffff)\n");
}

TEST_F(Drawing, DrawsADot) {
  haveQuadric();
  DrawDot(5, 6, 2, kDrawA, kDrawB);
  EXPECT_EQ(recording.text(), R"(glColor3f(1, 0, 0)
glPushMatrix()
glTranslatef(5, 6, 0)
gluQuadricDrawStyle(quadric, GLU_FILL)
gluDisk(quadric, 0, 2, 180, 1)
glPopMatrix()
glColor3f(0, 0.5, 1)
glPushMatrix()
glTranslatef(5, 6, 0)
gluQuadricDrawStyle(quadric, GLU_LINE)
gluDisk(quadric, 2, 2, 180, 1)
glPopMatrix()
)");
}

TEST_F(Drawing, DrawsAnArrowHeadWithItsTipAtTheOrigin) {
  DrawArrowHead({-1, 0}, {10, 1.5f}, kDrawA, kDrawB);
  EXPECT_EQ(recording.text(), R"(glColor3f(1, 0, 0)
glPushMatrix()
glRotatef(180, 0, 0, 1)
glBegin(GL_TRIANGLES)
glVertex2f(-10, 1.5)
glVertex2f(0, 0)
glVertex2f(-10, -1.5)
glEnd()
glColor3f(0, 0.5, 1)
glBegin(GL_LINE_LOOP)
glVertex2f(-10, 1.5)
glVertex2f(0, 0)
glVertex2f(-10, -1.5)
glEnd()
glPopMatrix()
)");
}

TEST_F(Drawing, RotatesAnArrowHeadToItsDirection) {
  const auto angle = [this](HvPoint direction) {
    recording.clear();
    DrawArrowHead(direction, {1, 1}, kDrawA, kDrawB);
    return recording.lines()[2];
  };
  EXPECT_EQ(angle({1, 0}), "glRotatef(0, 0, 0, 1)");
  EXPECT_EQ(angle({0, 1}), "glRotatef(90, 0, 0, 1)");
  EXPECT_EQ(angle({0, -3}), "glRotatef(-90, 0, 0, 1)");
  EXPECT_EQ(angle({2, 2}), "glRotatef(45, 0, 0, 1)");
  EXPECT_EQ(angle({-1, -1}), "glRotatef(-135, 0, 0, 1)");
}

TEST_F(Drawing, DrawsAnArrowHeadAtAPoint) {
  DrawArrowHead({0, 1}, {2, 3}, kDrawA, kDrawB);
  const std::string head = recording.text();
  recording.clear();
  DrawArrowHeadAt({7, -8}, {0, 1}, {2, 3}, kDrawA, kDrawB);
  EXPECT_EQ(recording.text(), "glPushMatrix()\nglTranslatef(7, -8, 0)\n" + head + "glPopMatrix()\n");
}

TEST_F(Drawing, SmoothsNothingForAnEmptyMask) {
  SmoothState state(0);
  BeginSmooth(state);
  EXPECT_FALSE(state.active);
  EndSmooth(state);
  EXPECT_EQ(recording.text(), "");
}

TEST_F(Drawing, SmoothsLinesAndPutsEverythingBack) {
  SmoothState state(SmoothState::kLines);
  BeginSmooth(state);
  EXPECT_TRUE(state.active);
  EXPECT_EQ(recording.text(), R"(glIsEnabled(GL_BLEND) -> 0
glGetIntegerv(GL_BLEND_SRC) -> GL_ONE
glGetIntegerv(GL_BLEND_DST) -> GL_ZERO
glEnable(GL_BLEND)
glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)
glIsEnabled(GL_LINE_SMOOTH) -> 0
glEnable(GL_LINE_SMOOTH)
)");
  recording.clear();
  EndSmooth(state);
  EXPECT_FALSE(state.active);
  EXPECT_EQ(recording.text(), R"(glBlendFunc(GL_ONE, GL_ZERO)
glDisable(GL_BLEND)
glDisable(GL_LINE_SMOOTH)
)");
  recording.clear();
  EndSmooth(state);
  EXPECT_EQ(recording.text(), "") << "it is over";
}

TEST_F(Drawing, LeavesOnWhatWasSmoothBefore) {
  SmoothState outer(SmoothState::kLines);
  BeginSmooth(outer);
  recording.clear();
  SmoothState inner(SmoothState::kPoints | SmoothState::kLines | SmoothState::kPolygons);
  BeginSmooth(inner);
  EXPECT_EQ(recording.text(), R"(glIsEnabled(GL_BLEND) -> 1
glGetIntegerv(GL_BLEND_SRC) -> GL_SRC_ALPHA
glGetIntegerv(GL_BLEND_DST) -> GL_ONE_MINUS_SRC_ALPHA
glEnable(GL_BLEND)
glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)
glIsEnabled(GL_POINT_SMOOTH) -> 0
glEnable(GL_POINT_SMOOTH)
glIsEnabled(GL_LINE_SMOOTH) -> 1
glEnable(GL_LINE_SMOOTH)
glIsEnabled(GL_POLYGON_SMOOTH) -> 0
glEnable(GL_POLYGON_SMOOTH)
)");
  recording.clear();
  EndSmooth(inner);
  EXPECT_EQ(recording.text(), R"(glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)
glDisable(GL_POINT_SMOOTH)
glDisable(GL_POLYGON_SMOOTH)
)");
  EndSmooth(outer);
}

TEST_F(Drawing, MakesAFontOf96Characters) {
  EXPECT_EQ(MakeOverlayFont(test::recordedContext()), 1u);
  EXPECT_EQ(recording.text(), R"(CreateFontA(18, 0, 0, 0, 700, 0, 0, 0, 0, 0, 0, 0, 0, "helv") -> font
SelectObject(dc, font) -> system font
glGenLists(96) -> 1
wglUseFontBitmapsW(dc, 32, 96, 1) -> 1
SelectObject(dc, system font) -> font
DeleteObject(font)
)");
  EXPECT_EQ(MakeOverlayFont(test::recordedContext()), 97u);
  EXPECT_EQ(recording.liveFonts(), 0);
}

TEST_F(Drawing, MakesNoFontWithoutADeviceOrAFont) {
  EXPECT_EQ(MakeOverlayFont(nullptr), 0u);
  EXPECT_EQ(recording.text(), "");
  recording.faults().noFont = true;
  EXPECT_EQ(MakeOverlayFont(test::recordedContext()), 0u);
  EXPECT_EQ(recording.lines().size(), 1u);
}

TEST_F(Drawing, KeepsListsThatStayEmpty) {
  recording.faults().noBitmaps = true;
  EXPECT_EQ(MakeOverlayFont(test::recordedContext()), 1u);
  EXPECT_EQ(recording.lines().back(), "DeleteObject(font)");
}

TEST_F(Drawing, FillsNoListsWhereThereAreNone) {
  recording.faults().noLists = true;
  EXPECT_EQ(MakeOverlayFont(test::recordedContext()), 0u);
  EXPECT_EQ(recording.lines()[2], "glGenLists(96) -> 0");
  EXPECT_EQ(recording.lines()[3], "SelectObject(dc, system font) -> font");
  EXPECT_EQ(recording.liveFonts(), 0);
}

TEST_F(Drawing, DeletesAFont) {
  DeleteOverlayFont(0);
  EXPECT_EQ(recording.text(), "");
  DeleteOverlayFont(97);
  EXPECT_EQ(recording.text(), "glDeleteLists(97, 96)\n");
}

TEST_F(Drawing, DrawsTextByTheListsOfTheFont) {
  SetOverlayFont(100);
  DrawText("Blur!?", 5, 3, -4.5f);
  EXPECT_EQ(recording.text(), R"(glRasterPos2f(3, -4.5)
glPushAttrib(GL_LIST_BIT)
glListBase(68)
glCallLists(5, GL_UNSIGNED_BYTE, "Blur!")
glPopAttrib()
)");
}

TEST_F(Drawing, DrawsNoTextWithoutAFont) {
  DrawText("Blur", 4, 0, 0);
  EXPECT_EQ(recording.text(), "");
  DrawShadowText("Blur", 0, 0);
  EXPECT_EQ(recording.text(), "glColor3f(0.1, 0.1, 0.1)\nglColor3f(1, 1, 0)\n");
}

TEST_F(Drawing, DrawsAShadowBelowAndLeftOfAText) {
  SetOverlayFont(33);
  DrawShadowText("ab", 10, 20);
  EXPECT_EQ(recording.text(), R"(glColor3f(0.1, 0.1, 0.1)
glRasterPos2f(10, 20)
glPushAttrib(GL_LIST_BIT)
glListBase(1)
glCallLists(2, GL_UNSIGNED_BYTE, "ab")
glPopAttrib()
glColor3f(1, 1, 0)
glRasterPos2f(11, 21)
glPushAttrib(GL_LIST_BIT)
glListBase(1)
glCallLists(2, GL_UNSIGNED_BYTE, "ab")
glPopAttrib()
)");
  recording.clear();
  DrawShadowText(nullptr, 0, 0);
  EXPECT_EQ(recording.text(), "");
}

}  // namespace
}  // namespace vblur
