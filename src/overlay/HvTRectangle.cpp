#include "overlay/HvTRectangle.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <GL/gl.h>

#include "image/Arithmetic.h"
#include "overlay/Drawing.h"
#include "overlay/OverlayColours.h"
#include "overlay/ScopeExit.h"

namespace vblur {
namespace {

// Half the length of a bar.
constexpr float kBar = 20.0f;

// The distance by which a bar may move two sides within the limits.
float Stopped(float distance, float low, float high, float least, float most) {
  if (distance > 0.0f) return std::min(distance, most - high);
  if (distance < 0.0f) return std::max(distance, least - low);
  return distance;
}

}  // namespace

HvTRectangle::HvTRectangle(const char* name, float x0, float y0, float x1, float y1) : HvTObject(name) {
  HvTRectangle::SetBox(x0, y0, x1, y1);
  SetColour(kHvTranslateHandle);
}

void HvTRectangle::NormaliseBox(float x0, float y0, float x1, float y1) {
  if (x0 > x1) std::swap(x0, x1);
  if (y0 > y1) std::swap(y0, y1);
  if (keepWithinLimits_) {
    x0 = clampTo(x0, limits_.minX, limits_.maxX);
    x1 = clampTo(x1, limits_.minX, limits_.maxX);
    y0 = clampTo(y0, limits_.minY, limits_.maxY);
    y1 = clampTo(y1, limits_.minY, limits_.maxY);
  }
  sides_ = {x0, y0, x1, y1};
}

void HvTRectangle::SetBox(float x0, float y0, float x1, float y1) {
  NormaliseBox(x0, y0, x1, y1);
  PutBox({x0, y0}, {x1 - x0, y1 - y0});
}

std::uint32_t HvTRectangle::EdgesAt(HvPoint pos, HvPoint tolerance, const HvBox& span) const {
  std::uint32_t edges = 0;
  if (span.minY - tolerance.y < pos.y && pos.y < span.maxY + tolerance.y) {
    if (std::abs(sides_.x0 - pos.x) < tolerance.x) {
      edges |= kLeft;
    } else if (std::abs(sides_.x1 - pos.x) < tolerance.x) {
      edges |= kRight;
    }
  }
  if (span.minX - tolerance.x < pos.x && pos.x < span.maxX + tolerance.x) {
    if (std::abs(sides_.y1 - pos.y) < tolerance.y) {
      edges |= kTop;
    } else if (std::abs(sides_.y0 - pos.y) < tolerance.y) {
      edges |= kBottom;
    }
  }
  return edges;
}

std::uint32_t HvTRectangle::BarsAt(HvPoint pos, HvPoint tolerance) const {
  const HvPoint d = pos - HvPoint{(sides_.x0 + sides_.x1) * 0.5f, (sides_.y0 + sides_.y1) * 0.5f};
  // The x tolerance applies to both lengths.
  const float reach = kBar + tolerance.x;
  std::uint32_t bars = 0;
  if (std::abs(d.y) < tolerance.y && -reach < d.x && d.x < reach) bars |= kHorizontalBar;
  if (std::abs(d.x) < tolerance.x && -reach < d.y && d.y < reach) bars |= kVerticalBar;
  return bars;
}

HvPick HvTRectangle::TakeEdges(std::uint32_t edges) {
  if (edges == 0) {
    edgeMask_ = 0;
    ClearTarget();
    return {};
  }
  if (edges != edgeMask_) MarkDirty();
  edgeMask_ = edges;
  SetTarget(this);
  return this;
}

HvPick HvTRectangle::Pick(HvPoint pos, HvPoint tolerance) {
  const std::uint32_t edges = EdgesAt(pos, tolerance, {sides_.x0, sides_.x1, sides_.y0, sides_.y1});
  return TakeEdges(edges != 0 ? edges : BarsAt(pos, tolerance));
}

std::int32_t HvTRectangle::Press(HvPoint pos) {
  Send(HvMessage(kInteractionBegins));
  pressPos_ = pos;
  return HvTObject::Press(pos);
}

std::int32_t HvTRectangle::Drag(HvPoint pos) {
  const HvPoint d = pos - pressPos_;
  pressPos_ = pos;
  HvRectangleSides box = sides_;
  if (IsOn(kLeft)) {
    box.x0 = std::min(box.x0 + d.x, box.x1);
  } else if (IsOn(kRight)) {
    box.x1 = std::max(box.x1 + d.x, box.x0);
  }
  if (IsOn(kBottom)) {
    box.y0 = std::min(box.y0 + d.y, box.y1);
  } else if (IsOn(kTop)) {
    box.y1 = std::max(box.y1 + d.y, box.y0);
  }
  if (IsOn(kHorizontalBar)) {
    const float by = keepWithinLimits_ ? Stopped(d.x, box.x0, box.x1, limits_.minX, limits_.maxX) : d.x;
    box.x0 += by;
    box.x1 += by;
  }
  if (IsOn(kVerticalBar)) {
    const float by = keepWithinLimits_ ? Stopped(d.y, box.y0, box.y1, limits_.minY, limits_.maxY) : d.y;
    box.y0 += by;
    box.y1 += by;
  }
  if (box == sides_) return 0;
  SetBox(box.x0, box.y0, box.x1, box.y1);
  Send(HvMessage(kInteractionChanged));
  return 1;
}

std::int32_t HvTRectangle::Release() {
  const ScopeExit lift([this] { HvTObject::Release(); });
  Send(HvMessage(kInteractionEnds));
  return 1;
}

void HvTRectangle::Draw() {
  SmoothState smooth(SmoothState::kLines);
  BeginSmooth(smooth);
  DrawCross();
  const auto& [x0, y0, x1, y1] = sides_;
  if (IsHovered() || IsPressed()) {
    DrawEdge(kLeft, x0, y0, x0, y1);
    DrawEdge(kRight, x1, y0, x1, y1);
    DrawEdge(kBottom, x0, y0, x1, y0);
    DrawEdge(kTop, x0, y1, x1, y1);
  } else {
    SetGlColour(Colour());
    DrawRectOutline(x0, y0, x1, y1);
  }
  EndSmooth(smooth);
}

void HvTRectangle::DrawCross() const {
  glPushMatrix();
  glTranslatef((sides_.x0 + sides_.x1) * 0.5f, (sides_.y0 + sides_.y1) * 0.5f, 0.0f);
  DrawBar(kHorizontalBar, {-kBar, 0.0f}, {kBar, 0.0f});
  DrawBar(kVerticalBar, {0.0f, -kBar}, {0.0f, kBar});
  glPopMatrix();
}

void HvTRectangle::DrawBar(Edge bar, HvPoint from, HvPoint to) const {
  if (IsOn(bar) && IsHovered() && !IsPressed()) {
    DrawDashedLine(from.x, from.y, to.x, to.y, Colour(), kHvHighlight);
    return;
  }
  SetGlColour(IsOn(bar) && IsPressed() ? kHvHighlight : Colour());
  DrawLine(from.x, from.y, to.x, to.y);
}

// For a rectangle that is hovered or pressed.
void HvTRectangle::DrawEdge(Edge edge, float x0, float y0, float x1, float y1) const {
  const HvColour bright = IsOn(edge) ? kHvHighlight : Colour();
  if (IsHovered()) {
    DrawDashedLine(x0, y0, x1, y1, Colour(), bright);
    return;
  }
  SetGlColour(bright);
  DrawLine(x0, y0, x1, y1);
}

}  // namespace vblur
