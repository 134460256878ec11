// The viewer tool's OpenGL calls around those of the widgets.
#include <stdexcept>

#include <gtest/gtest.h>

#include "overlay/HvTInteract.h"
#include "tests/overlay/Probe.h"
#include "tests/overlay/ToolWorld.h"
#include "tests/support/gl/GlRecording.h"

namespace vblur {
namespace {

// Calls of the base class's OnRender, and its result.
struct BaseRender {
  std::vector<IVWSurface*> surfaces;
  HRESULT answer = kOk;
} baseRender;

}  // namespace

// Replaces the viewer library's function in this program.
HRESULT CDSInteractiveTool::OnRender(IVWSurface* surface) {
  baseRender.surfaces.push_back(surface);
  return baseRender.answer;
}

namespace {

using test::GlRecording;
using test::NewTool;

class TestSurface : public IVWSurface {
 public:
  HRESULT BeginRenderOpenGL(tagVWOPENGLSURFACE& shown) override {
    ++begins;
    if (result >= 0) shown = info;
    return result;
  }
  HRESULT EndRenderOpenGL(const tagVWOPENGLSURFACE&) override {
    ++ends;
    return kOk;
  }

  tagVWOPENGLSURFACE info{800, 400, -20.0, 10.0, 200.0, 100.0};
  HRESULT result = kOk;
  int begins = 0;
  int ends = 0;
};

std::vector<std::string> WithoutFont(const std::vector<std::string>& lines) {
  const auto first = std::find(lines.begin(), lines.end(), "glPushAttrib(0xfffff)");
  return {first, lines.end()};
}

TEST(HvTInteractPaint, SetsUpTheViewInItsOrder) {
  GlRecording gl;
  const test::TestProject project(400.0, 200.0, 800.0, 400.0);
  const auto tool = NewTool();
  TestSurface surface;
  EXPECT_EQ(tool->OnRender(&surface), kOk);
  EXPECT_EQ(WithoutFont(gl.lines()), (std::vector<std::string>{
                                         "glPushAttrib(0xfffff)",
                                         "glShadeModel(GL_SMOOTH)",
                                         "glClearColor(0.6, 0.6, 0.6, 0)",
                                         "glEnable(GL_LINE_STIPPLE)",
                                         "glViewport(0, 0, 799, 399)",
                                         "glLoadIdentity()",
                                         "glOrtho(-0.5, 799.5, -0.5, 399.5, -100, 100)",
                                         "glLoadIdentity()",
                                         "glOrtho(-20, 180, 10, 110, -100, 100)",
                                         "glScalef(2, 2, 1)",
                                         // The two nodes at the centre, without children.
                                         "glPushMatrix()",
                                         "glTranslatef(100, 100, 0)",
                                         "glPopMatrix()",
                                         "glPushMatrix()",
                                         "glTranslatef(100, 100, 0)",
                                         "glPopMatrix()",
                                         "glPopAttrib()",
                                     }));
  EXPECT_EQ(surface.begins, 1);
  EXPECT_EQ(surface.ends, 1);
}

TEST(HvTInteractPaint, SetsThePickDistanceToFourSurfacePixels) {
  GlRecording gl;
  const auto tool = NewTool();
  EXPECT_EQ(tool->Tolerance(), (HvPoint{3.0f, 3.0f}));
  TestSurface surface;
  tool->OnRender(&surface);
  EXPECT_EQ(tool->Tolerance(), (HvPoint{1.0f, 1.0f}));
  surface.info.worldWidth = 1600.0;
  tool->OnRender(&surface);
  EXPECT_EQ(tool->Tolerance(), (HvPoint{8.0f, 1.0f}));
}

TEST(HvTInteractPaint, PassesTheWorldThroughFloats) {
  GlRecording gl;
  const auto tool = NewTool();
  TestSurface surface;
  surface.info.x = 0.1;
  tool->OnRender(&surface);
  const std::string text = gl.text();
  EXPECT_NE(text.find("glOrtho(0.10000000149011612, 200.10000610351562, 10, 110, -100, 100)"), std::string::npos)
      << text;
}

TEST(HvTInteractPaint, LeavesTheSurfaceWhenAWidgetThrows) {
  struct Refusing : test::Probe {
    using Probe::Probe;
    void Draw() override { throw std::runtime_error("refused"); }
  };
  GlRecording gl;
  const auto tool = NewTool();
  test::CallLog log;
  Refusing refusing(log, "r", test::square(0, 0, 1));
  refusing.SetParent(&tool->ViewZero());
  TestSurface surface;
  EXPECT_THROW(tool->OnRender(&surface), std::runtime_error);
  EXPECT_EQ(surface.ends, 1);
  ASSERT_FALSE(gl.lines().empty());
  EXPECT_EQ(gl.lines().back(), "glPopAttrib()");
  refusing.Detach();
}

TEST(HvTInteractPaint, RefusesNoSurface) {
  const auto tool = NewTool();
  EXPECT_EQ(tool->OnRender(nullptr), kNullPointer);
}

TEST(HvTInteractPaint, CallsTheBaseAndHandsItsResultOn) {
  GlRecording gl;
  const auto tool = NewTool();
  TestSurface surface;
  const auto answerOf = [&](HRESULT base) {
    baseRender = {{}, base};
    const HRESULT answer = tool->OnRender(&surface);
    EXPECT_EQ(baseRender.surfaces, std::vector<IVWSurface*>{&surface});
    return answer;
  };
  EXPECT_EQ(answerOf(kFalse), kFalse);
  EXPECT_EQ(answerOf(kOutOfMemory), kOutOfMemory);
  surface.result = kFailed;
  EXPECT_EQ(answerOf(kFalse), kFalse) << "without a surface that opens";
  tool->ShowControls(false);
  EXPECT_EQ(answerOf(kOutOfMemory), kOutOfMemory) << "with the controls hidden";
  EXPECT_EQ(answerOf(kOk), kOk);
  baseRender = {};
  EXPECT_EQ(tool->OnRender(nullptr), kNullPointer);
  EXPECT_TRUE(baseRender.surfaces.empty());
}

TEST(HvTInteractPaint, LeavesOutTheOverlayWhereNoSurfaceOpens) {
  GlRecording gl;
  const auto tool = NewTool();
  TestSurface surface;
  surface.result = kFailed;
  EXPECT_EQ(tool->OnRender(&surface), kOk);
  EXPECT_TRUE(gl.lines().empty());
  EXPECT_EQ(surface.ends, 0);
}

TEST(HvTInteractPaint, DoesNothingWhileControlsAreHidden) {
  GlRecording gl;
  const auto tool = NewTool();
  tool->ShowControls(false);
  TestSurface surface;
  EXPECT_EQ(tool->OnRender(&surface), kOk);
  EXPECT_TRUE(gl.lines().empty());
  EXPECT_EQ(surface.begins, 0);
}

TEST(HvTInteractPaint, MakesItsFontInTheFirstContextAndKeepsIt) {
  GlRecording gl;
  TestSurface surface;
  {
    const auto tool = NewTool();
    tool->OnRender(&surface);
    EXPECT_NE(gl.text().find("glGenLists(96)"), std::string::npos) << gl.text();
    gl.clear();
    tool->OnRender(&surface);
    EXPECT_EQ(gl.text().find("glGenLists"), std::string::npos);
    gl.clear();
  }
  EXPECT_NE(gl.text().find("glDeleteLists("), std::string::npos) << gl.text();
}

TEST(HvTInteractPaint, TriesForAFontAgainWhereThereWasNone) {
  GlRecording gl;
  gl.faults().noFont = true;
  const auto tool = NewTool();
  TestSurface surface;
  EXPECT_EQ(tool->OnRender(&surface), kOk);
  EXPECT_EQ(gl.text().find("glGenLists"), std::string::npos);
  gl.faults().noFont = false;
  tool->OnRender(&surface);
  EXPECT_NE(gl.text().find("glGenLists(96)"), std::string::npos);
}

}  // namespace
}  // namespace vblur
