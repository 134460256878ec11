#include "overlay/Drawing.h"

#include <array>
#include <cmath>
#include <cstring>
#include <utility>

#include <GL/gl.h>
#include <GL/glu.h>

#include "overlay/OverlayColours.h"

namespace vblur {
namespace {

constexpr double kDegreesPerPi = 180.0;
constexpr double kOverlayPi = 3.1415927;

constexpr std::uint32_t kFirstCharacter = 32;
constexpr std::uint32_t kCharacters = 96;
constexpr std::int32_t kFontHeight = 18;
constexpr std::int32_t kFontWeight = 700;

constexpr GLint kCircleSlices = 180;
constexpr GLint kArcSlices = 360;

constexpr std::array<std::pair<std::uint32_t, GLenum>, 3> kSmoothModes{{
    {SmoothState::kPoints, GL_POINT_SMOOTH},
    {SmoothState::kLines, GL_LINE_SMOOTH},
    {SmoothState::kPolygons, GL_POLYGON_SMOOTH},
}};

GLUquadric* sharedQuadric = nullptr;
std::uint32_t overlayFont = 0;

// Null if creation fails; retried on the next call.
GLUquadric* Quadric() {
  if (sharedQuadric == nullptr) {
    sharedQuadric = gluNewQuadric();
    if (sharedQuadric != nullptr) gluQuadricNormals(sharedQuadric, GLU_NONE);
  }
  return sharedQuadric;
}

// Calls draw(quadric) with the origin at (cx, cy).
template <class Draw>
void DrawRound(float cx, float cy, float r, GLenum style, const Draw& draw) {
  GLUquadric* const quadric = Quadric();
  if (quadric == nullptr || !(r > 0.0f)) return;
  glPushMatrix();
  glTranslatef(cx, cy, 0.0f);
  gluQuadricDrawStyle(quadric, style);
  draw(quadric);
  glPopMatrix();
}

// Two passes of draw() with interlocking dashes, after under() with the state unchanged.
template <class Under, class Draw>
void DrawDashed(HvColour colourA, HvColour colourB, const Under& under, const Draw& draw) {
  GLint pattern = 0;
  GLint repeat = 0;
  glGetIntegerv(GL_LINE_STIPPLE_PATTERN, &pattern);
  glGetIntegerv(GL_LINE_STIPPLE_REPEAT, &repeat);
  under();
  glLineStipple(1, kHvDash);
  SetGlColour(colourA);
  draw();
  glLineStipple(1, kHvDashComplement);
  SetGlColour(colourB);
  draw();
  glLineStipple(repeat, static_cast<GLushort>(pattern));
}

void DrawTriangle(GLenum primitive, HvPoint size) {
  glBegin(primitive);
  glVertex2f(-size.x, size.y);
  glVertex2f(0.0f, 0.0f);
  glVertex2f(-size.x, -size.y);
  glEnd();
}

}  // namespace

void BeginSmooth(SmoothState& state) {
  if (state.mask == 0) return;
  state.blended = glIsEnabled(GL_BLEND) != GL_FALSE;
  glGetIntegerv(GL_BLEND_SRC, &state.blendSource);
  glGetIntegerv(GL_BLEND_DST, &state.blendDestination);
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  state.enabled = 0;
  for (const auto& [bit, mode] : kSmoothModes) {
    if ((state.mask & bit) == 0) continue;
    if (glIsEnabled(mode) == GL_FALSE) state.enabled |= bit;
    glEnable(mode);
  }
  state.active = true;
}

void EndSmooth(SmoothState& state) {
  if (!state.active || state.mask == 0) return;
  glBlendFunc(static_cast<GLenum>(state.blendSource), static_cast<GLenum>(state.blendDestination));
  if (!state.blended) glDisable(GL_BLEND);
  state.active = false;
  for (const auto& [bit, mode] : kSmoothModes) {
    if ((state.enabled & bit) != 0) glDisable(mode);
  }
}

void SetGlColour(HvColour colour) {
  glColor3f(colour.red, colour.green, colour.blue);
}

void DrawLine(float x0, float y0, float x1, float y1) {
  glBegin(GL_LINE_STRIP);
  glVertex2f(x0, y0);
  glVertex2f(x1, y1);
  glEnd();
}

void DrawDashedLine(float x0, float y0, float x1, float y1, HvColour colourA, HvColour colourB) {
  DrawDashed(
      colourA, colourB, [] {}, [&] { DrawLine(x0, y0, x1, y1); });
}

void DrawRectFilled(float x0, float y0, float x1, float y1) {
  glRectf(x0, y0, x1, y1);
}

void DrawRectOutline(float x0, float y0, float x1, float y1) {
  glBegin(GL_LINE_LOOP);
  glVertex2f(x0, y0);
  glVertex2f(x1, y0);
  glVertex2f(x1, y1);
  glVertex2f(x0, y1);
  glEnd();
}

void DrawCircleOutline(float cx, float cy, float r) {
  DrawRound(cx, cy, r, GLU_LINE, [r](GLUquadric* quadric) { gluDisk(quadric, r, r, kCircleSlices, 1); });
}

void DrawFilledDisc(float cx, float cy, float r) {
  DrawRound(cx, cy, r, GLU_FILL, [r](GLUquadric* quadric) { gluDisk(quadric, 0.0, r, kCircleSlices, 1); });
}

void DrawArc(float cx, float cy, float r, float from, float to) {
  // GLU angles run clockwise from +y.
  const float start = -(from - 90.0f);
  const float sweep = -(to - 90.0f) + (from - 90.0f);
  DrawRound(cx, cy, r, GLU_LINE,
            [=](GLUquadric* quadric) { gluPartialDisk(quadric, r, r, kArcSlices, 1, start, sweep); });
}

void DrawDashedArc(float cx, float cy, float r, float from, float to, HvColour colourA, HvColour colourB) {
  DrawDashed(
      colourA, colourB, [] {}, [&] { DrawArc(cx, cy, r, from, to); });
}

void DrawDashedCircle(float cx, float cy, float r, HvColour colourA, HvColour colourB) {
  const auto circle = [=] { DrawCircleOutline(cx, cy, r); };
  DrawDashed(colourA, colourB, circle, circle);
}

void DrawDot(float cx, float cy, float r, HvColour fill, HvColour outline) {
  SetGlColour(fill);
  DrawFilledDisc(cx, cy, r);
  SetGlColour(outline);
  DrawCircleOutline(cx, cy, r);
}

void DrawArrowHead(HvPoint direction, HvPoint size, HvColour fill, HvColour outline) {
  const double angle = std::atan2(static_cast<double>(direction.y), static_cast<double>(direction.x));
  SetGlColour(fill);
  glPushMatrix();
  glRotatef(static_cast<float>(angle * kDegreesPerPi / kOverlayPi), 0.0f, 0.0f, 1.0f);
  DrawTriangle(GL_TRIANGLES, size);
  SetGlColour(outline);
  DrawTriangle(GL_LINE_LOOP, size);
  glPopMatrix();
}

void DrawArrowHeadAt(HvPoint pos, HvPoint direction, HvPoint size, HvColour fill, HvColour outline) {
  glPushMatrix();
  glTranslatef(pos.x, pos.y, 0.0f);
  DrawArrowHead(direction, size, fill, outline);
  glPopMatrix();
}

std::uint32_t MakeOverlayFont(HDC dc) {
  if (dc == nullptr) return 0;
  HFONT const font = CreateFontA(kFontHeight, 0, 0, 0, kFontWeight, 0, 0, 0, 0, 0, 0, 0, 0, "helv");
  if (font == nullptr) return 0;
  HFONT const before = SelectObject(dc, font);
  const std::uint32_t base = glGenLists(kCharacters);
  // On failure the lists stay empty and no text shows.
  if (base != 0) wglUseFontBitmapsW(dc, kFirstCharacter, kCharacters, base);
  SelectObject(dc, before);
  DeleteObject(font);
  return base;
}

void DeleteOverlayFont(std::uint32_t base) {
  if (base != 0) glDeleteLists(base, kCharacters);
}

void SetOverlayFont(std::uint32_t base) {
  overlayFont = base;
}

void DrawText(const char* text, std::size_t length, float x, float y) {
  if (overlayFont == 0) return;
  glRasterPos2f(x, y);
  glPushAttrib(GL_LIST_BIT);
  glListBase(overlayFont - kFirstCharacter);
  glCallLists(static_cast<GLsizei>(length), GL_UNSIGNED_BYTE, text);
  glPopAttrib();
}

void DrawShadowText(const char* text, float x, float y) {
  if (text == nullptr) return;
  const std::size_t length = std::strlen(text);
  SetGlColour(kHvDark);
  DrawText(text, length, x, y);
  SetGlColour(kHvTipText);
  DrawText(text, length, x + 1.0f, y + 1.0f);
}

void ReleaseOverlayQuadric() {
  if (sharedQuadric == nullptr) return;
  gluDeleteQuadric(sharedQuadric);
  sharedQuadric = nullptr;
}

}  // namespace vblur
