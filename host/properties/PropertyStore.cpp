#include "host/properties/PropertyStore.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "host/base/Failure.h"

namespace vblur::host {

namespace {

const Property& Require(const GUID& guid) {
  const Property* property = FindProperty(guid);
  if (property == nullptr) throw Failure(ExitCode::WrongUsage, "the effect has no property with this identity");
  return *property;
}

void CheckCurve(const Property& property, const Curve& curve) {
  const std::string name(property.name);
  if (!property.IsAnimated()) Refuse(name, "not an animated property, expected a value");
  if (curve.keys.empty()) Refuse(name, "expected at least one key");
  const auto risesNot = [](const CurveKey& a, const CurveKey& b) { return !(a.time < b.time); };
  if (std::ranges::adjacent_find(curve.keys, risesNot) != curve.keys.end()) {
    Refuse(name, "expected keys in the order of time, each later than the one before");
  }
}

bool IsDefault(const Property& property, double value) {
  return value == property.defaultValue && std::signbit(value) == std::signbit(property.defaultValue);
}

}  // namespace

const Property* FindProperty(const GUID& guid) {
  const auto found = std::ranges::find(kProperties, guid, &Property::guid);
  return found == kProperties.end() ? nullptr : &*found;
}

void PropertyStore::Set(const GUID& property, Setting setting) {
  const Property& entry = Require(property);
  if (const auto* curve = std::get_if<Curve>(&setting)) {
    CheckCurve(entry, *curve);
  } else if (IsDefault(entry, std::get<double>(setting))) {
    settings_.erase(property);
    return;
  }
  settings_.insert_or_assign(property, std::move(setting));
}

const PropertyStore::Setting* PropertyStore::Find(const GUID& property) const {
  const auto found = settings_.find(property);
  return found == settings_.end() ? nullptr : &found->second;
}

double PropertyStore::ValueAt(const GUID& property, double time) const {
  const Setting* setting = Find(property);
  if (setting == nullptr) return Require(property).defaultValue;
  if (const auto* curve = std::get_if<Curve>(setting)) return curve->At(time);
  return std::get<double>(*setting);
}

}  // namespace vblur::host
