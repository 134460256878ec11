// Painting of the axis control: the active handle is highlighted while pressed and dashed while hovered.
#include <array>
#include <cstring>

#include <GL/gl.h>

#include "overlay/Drawing.h"
#include "overlay/HvT2DAxis.h"
#include "overlay/OverlayColours.h"

namespace vblur {
namespace {

// In the parent's units. The guide and the arc are multiplied by the handle scale.
constexpr float kAspectGuide = 17.0f;
constexpr float kArcArrow = 22.627417f;  // the ends of the arc, at 45 degrees
constexpr HvPoint kArcArrowSize{10.0f, 2.0f};
constexpr HvPoint kArrowSize{10.0f, 1.5f};
constexpr float kArcEnd = 45.0f;  // degrees
constexpr float kDotRadius = 2.0f;
constexpr float kNameShadowAt = 3.0f;
constexpr float kNameAt = 5.0f;
constexpr HvColour kNameShadow{0.0f, 0.0f, 0.0f};

struct Segment {
  HvPoint from;
  HvPoint to;
};

struct ArrowPair {
  std::array<Segment, 2> shafts;
  std::array<HvPoint, 2> directions;
};

// Dashes start at the left end along x and at the tips along y.
constexpr ArrowPair kArrowsAlongX{{{{{-34, 0}, {-3, 0}}, {{3, 0}, {34, 0}}}}, {{{-1, 0}, {1, 0}}}};
constexpr ArrowPair kArrowsAlongY{{{{{0, -34}, {0, -3}}, {{0, 34}, {0, 3}}}}, {{{0, -1}, {0, 1}}}};

// Dashed: `a` and `b` interlocked. Solid: `a`. Arrow heads are filled with `a` and outlined with `b`.
struct LineStyle {
  HvColour a;
  HvColour b;
  bool dashed;

  static LineStyle Solid(HvColour colour) { return {colour, colour, false}; }
  static LineStyle Dashed(HvColour colour) { return {colour, kHvHighlight, true}; }

  void Line(float x0, float y0, float x1, float y1) const {
    if (dashed) {
      DrawDashedLine(x0, y0, x1, y1, a, b);
    } else {
      SetGlColour(a);
      DrawLine(x0, y0, x1, y1);
    }
  }
};

}  // namespace

void HvT2DAxis::MultiplyByStackTop() {
  const auto& m = OverlayMatrixStack::Get().Top().m;
  const std::array<GLfloat, 16> matrix{m[0], m[1], 0, 0, m[3], m[4], 0, 0, 0, 0, 1, 0, m[6], m[7], 0, 1};
  glMultMatrixf(matrix.data());
}

void HvT2DAxis::Draw() {
  SmoothState smooth(SmoothState::kPoints | SmoothState::kLines | SmoothState::kPolygons);
  BeginSmooth(smooth);
  if (UsesStackMatrix()) {
    glPushMatrix();
    MultiplyByStackTop();
  }
  glPushMatrix();
  glTranslatef(Offers(kTranslateX) ? centre_.x : 0.0f, Offers(kTranslateY) ? centre_.y : 0.0f, 0.0f);
  glPushMatrix();
  glPushMatrix();
  if (Offers(kRotate)) glRotatef(rotation_, 0.0f, 0.0f, 1.0f);
  DrawRotatedHandles();
  glPopMatrix();
  if ((axisFlags_ & kNoTranslation) == 0) {
    if (Offers(kTranslateX)) DrawArrows(kTranslateX);
    if (Offers(kTranslateY)) DrawArrows(kTranslateY);
  }
  glPopMatrix();
  DrawName();
  glPopMatrix();
  if (UsesStackMatrix()) glPopMatrix();
  EndSmooth(smooth);
}

void HvT2DAxis::DrawRotatedHandles() const {
  if (Offers(kAspect) && IsActive(kAspect) && (IsPressed() || IsHovered())) DrawAspectGuide();
  if (Offers(kAnyScale)) DrawScaleBox();
  if (Offers(kAspect)) DrawAspectHandle();
  if (Offers(kRotate)) DrawRotateHandle();
  if (!Offers(kTranslate) && (axisFlags_ & kAsIfAll) == 0) DrawCentreDot();
}

void HvT2DAxis::DrawAspectGuide() const {
  const LineStyle style = LineStyle::Dashed(kHvScaleHandle);
  style.Line(0.0f, 0.0f, 0.0f, kAspectGuide * HandleScale());
  style.Line(0.0f, 0.0f, kAspectGuide * HandleScale(), 0.0f);
}

void HvT2DAxis::DrawScaleBox() const {
  const auto styleOf = [this](std::uint32_t handles) {
    if (IsActive(handles) && IsPressed()) return LineStyle::Solid(kHvHighlight);
    if (IsActive(handles) && IsHovered()) return LineStyle::Dashed(kHvScaleHandle);
    return LineStyle::Solid(kHvScaleHandle);
  };
  const HvPoint half = BoxCorner();
  const LineStyle vertical = styleOf(kScale | kScaleX);
  vertical.Line(-half.x, -half.y, -half.x, half.y);
  vertical.Line(half.x, -half.y, half.x, half.y);
  const LineStyle horizontal = styleOf(kScale | kScaleY);
  horizontal.Line(-half.x, -half.y, half.x, -half.y);
  horizontal.Line(-half.x, half.y, half.x, half.y);
}

void HvT2DAxis::DrawAspectHandle() const {
  const HvPoint pos = AspectHandlePos();
  LineStyle style = LineStyle::Solid(kHvScaleHandle);
  if (IsActive(kAspect)) style = IsPressed() ? LineStyle::Solid(kHvHighlight) : LineStyle::Dashed(kHvScaleHandle);
  style.Line(0.0f, 0.0f, pos.x, pos.y);
  DrawDot(pos.x, pos.y, kDotRadius, kHvScaleHandle, IsActive(kAspect) ? kHvHighlight : kHvDark);
}

void HvT2DAxis::DrawRotateHandle() const {
  HvColour a = kHvRotateHandle;
  HvColour b = kHvRotateHandle;
  if (IsActive(kRotate) && IsHovered()) {
    b = kHvHighlight;
  } else if (IsActive(kRotate) && IsPressed()) {
    a = b = kHvHighlight;
  }
  const float s = HandleScale();
  const float end = kArcArrow * s;
  const HvPoint size{kArcArrowSize.x * s, kArcArrowSize.y * s};
  DrawDashedLine(0.0f, 0.0f, ArcRadius(), 0.0f, a, b);
  DrawDashedArc(0.0f, 0.0f, ArcRadius(), -kArcEnd, kArcEnd, a, b);
  DrawArrowHeadAt({end, -end}, {-1.0f, -1.4142135f}, size, a, b);
  DrawArrowHeadAt({end, end}, {-1.0f, 1.4142135f}, size, a, b);
}

void HvT2DAxis::DrawCentreDot() const {
  const HvColour fill = Offers(kAnyScale | kAspect) ? kHvScaleHandle : kHvRotateHandle;
  DrawDot(0.0f, 0.0f, kDotRadius, fill, IsActive(kAspect) ? kHvHighlight : kHvDark);
}

void HvT2DAxis::DrawArrows(Handle handle) const {
  LineStyle style = LineStyle::Solid(kHvTranslateHandle);
  if (IsActive(handle) && IsHovered()) {
    style = LineStyle::Dashed(kHvTranslateHandle);
  } else if (IsActive(handle) && IsPressed()) {
    style = LineStyle::Solid(kHvHighlight);
  }
  const float s = HandleScale();
  const ArrowPair& arrows = handle == kTranslateX ? kArrowsAlongX : kArrowsAlongY;
  for (const auto& [from, to] : arrows.shafts)
    style.Line(from.x * s, from.y * s, to.x * s, to.y * s);
  for (const HvPoint direction : arrows.directions) {
    const HvPoint tip{direction.x * AxisLength(), direction.y * AxisLength()};
    DrawArrowHeadAt(tip, direction, {kArrowSize.x * s, kArrowSize.y * s}, style.a, style.b);
  }
}

void HvT2DAxis::DrawName() const {
  if ((axisFlags_ & kDrawName) == 0 || Name() == nullptr) return;
  const std::size_t length = std::strlen(Name());
  SetGlColour(kNameShadow);
  DrawText(Name(), length, kNameShadowAt, kNameShadowAt);
  SetGlColour(kHvHighlight);
  DrawText(Name(), length, kNameAt, kNameAt);
}

}  // namespace vblur
