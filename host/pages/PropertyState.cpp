#include "host/pages/PropertyState.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace vblur::host {
namespace {

bool SameBits(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

bool SameBits(const DSVariant& a, const DSVariant& b) {
  return a.type == b.type && a.whole == b.whole && SameBits(a.number, b.number);
}

bool SameBits(const std::optional<DSCurve>& a, const std::optional<DSCurve>& b) {
  if (!a || !b) return a.has_value() == b.has_value();
  const auto same = [](const DSCurveKey& one, const DSCurveKey& other) {
    return SameBits(one.time, other.time) && SameBits(one.value, other.value);
  };
  return a->interpolation == b->interpolation && std::ranges::equal(a->keys, b->keys, same);
}

}  // namespace

std::optional<PropertyState> PropertyState::Read(IDSProperties& from, const GUID& property) {
  PropertyState state;
  const DSCurve* curve = nullptr;
  if (from.GetValue(property, &state.plain) < 0 || from.GetCurve(property, &curve) < 0) return std::nullopt;
  if (curve != nullptr) state.curve = *curve;
  return state;
}

bool PropertyState::Write(IDSProperties& to, const GUID& property) const {
  const std::optional<PropertyState> held = Read(to, property);
  if (!held) return false;
  if (!SameBits(held->curve, curve) && (curve ? to.PutCurve(property, *curve) : to.RemoveCurve(property)) < 0) {
    return false;
  }
  return SameBits(held->plain, plain) || to.PutValue(property, plain) >= 0;
}

bool operator==(const PropertyState& a, const PropertyState& b) {
  return SameBits(a.plain, b.plain) && SameBits(a.curve, b.curve);
}

}  // namespace vblur::host
