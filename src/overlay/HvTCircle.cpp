#include "overlay/HvTCircle.h"

#include <cmath>

#include <GL/gl.h>

#include "overlay/Drawing.h"
#include "overlay/OverlayColours.h"
#include "overlay/ScopeExit.h"

namespace vblur {
namespace {

constexpr HvColour kRing{0.7f, 0.7f, 0.0f};

}  // namespace

HvTCircle::HvTCircle(const char* name, float radius) : HvTObject(name), radius_(radius) {
  SetColour(kRing);
  UpdateBox();
}

// Truncated to whole numbers: exact enough for culling.
void HvTCircle::UpdateBox() {
  const float rx = std::trunc(radius_ * ScaleX());
  const float ry = std::trunc(radius_ * ScaleY());
  PutBox({-rx, -ry}, {2.0f * rx, 2.0f * ry});
}

bool HvTCircle::SetRadius(float radius) {
  if (radius == radius_) return false;
  radius_ = radius;
  UpdateBox();
  return true;
}

bool HvTCircle::SetAspect(float aspect) {
  if (aspect == aspect_) return false;
  aspect_ = aspect;
  UpdateBox();
  return true;
}

double HvTCircle::RadiusAt(HvPoint pos) const {
  const double acrossX = 1.0 / static_cast<double>(ScaleX());
  const double acrossY = 1.0 / static_cast<double>(ScaleY());
  return std::hypot(static_cast<double>(pos.x) * acrossX, static_cast<double>(pos.y) * acrossY);
}

HvPick HvTCircle::Pick(HvPoint pos, HvPoint tolerance) {
  if (!IsFlat() && std::abs(static_cast<float>(RadiusAt(pos) - static_cast<double>(radius_))) < tolerance.x) {
    SetTarget(this);
    return this;
  }
  ClearTarget();
  return {};
}

void HvTCircle::Draw() {
  glPushMatrix();
  glLineWidth(2.0f);
  glScalef(ScaleX(), ScaleY(), 1.0f);
  if (IsHovered()) {
    DrawDashedCircle(0.0f, 0.0f, radius_, Colour(), kHvHighlight);
  } else {
    SetGlColour(IsPressed() ? kHvHighlight : Colour());
    DrawCircleOutline(0.0f, 0.0f, radius_);
  }
  glLineWidth(1.0f);
  glPopMatrix();
}

std::int32_t HvTCircle::Press(HvPoint pos) {
  Send(HvMessage(kInteractionBegins));
  return HvTObject::Press(pos);
}

std::int32_t HvTCircle::Drag(HvPoint pos) {
  if (IsFlat() || !SetRadius(static_cast<float>(RadiusAt(pos)))) return 0;
  Send(HvMessage::OfNumber(kInteractionChanged, radius_));
  return 1;
}

std::int32_t HvTCircle::Release() {
  const ScopeExit lift([this] { HvTObject::Release(); });
  Send(HvMessage(kInteractionEnds));
  return 1;
}

}  // namespace vblur
