#include "overlay/HvTDsCircle.h"

#include <algorithm>

#include "image/Arithmetic.h"
#include "overlay/HvTInteract.h"

namespace vblur {
namespace {

constexpr float kFirstRadius = 100.0f;

}  // namespace

float AspectToDraw(double aspect) {
  if (aspect == 0.0) return 1.0f;
  if (aspect > 0.0) return static_cast<float>(1.0 / (1.0 - std::min(aspect, 1.0)));
  return static_cast<float>(1.0 - clampTo(-aspect, 0.0, 1.0));
}

HvTDsCircle::HvTDsCircle() : HvTCircle("Circle", kFirstRadius) {
  Obey(this);
}

HvTDsCircle::~HvTDsCircle() {
  Detach();
  LeaveTool();
}

void HvTDsCircle::BindProperties(const GUID& radius, const GUID& aspect) {
  radiusProperty_ = radius;
  aspectProperty_ = aspect;
}

void HvTDsCircle::Commit() {
  if (Tool() != nullptr) Tool()->WriteAnimated(radiusProperty_, static_cast<double>(Radius()));
}

std::int32_t HvTDsCircle::OnPropertyChange(const GUID& property, const DSVariant* value) {
  const auto read = [&](const GUID& bound) -> std::optional<double> {
    if (value == nullptr) return Tool() == nullptr ? std::nullopt : Tool()->ReadIfAffected(property, bound);
    if (property != bound && property != GUID_ALL_PROPERTIES) return std::nullopt;
    return value->AsNumber();
  };
  std::int32_t concerned = 0;
  if (const auto radius = read(radiusProperty_)) {
    TakeRadius(*radius);
    concerned = 1;
  }
  if (const auto aspect = read(aspectProperty_)) {
    TakeAspect(*aspect);
    concerned = 1;
  }
  return concerned;
}

void HvTDsCircle::OnTime(double time) {
  if (Tool() == nullptr) return;
  if (const auto radius = Tool()->ReadAnimated(radiusProperty_, time)) TakeRadius(*radius);
  if (const auto aspect = Tool()->ReadAnimated(aspectProperty_, time)) TakeAspect(*aspect);
}

}  // namespace vblur
