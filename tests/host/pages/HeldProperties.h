// What an effect holds of all properties of the table, as bits, to compare: a copy of the whole for tests of undo.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/IDSProperties.h"
#include "properties/PropertyTable.h"

namespace vblur::host {

inline std::uint64_t BitsOf(double number) {
  return std::bit_cast<std::uint64_t>(number);
}

struct HeldProperty {
  std::uint64_t plain = 0;
  // Time and value of each key; no keys without a curve.
  std::vector<std::array<std::uint64_t, 2>> keys;
  std::int32_t interpolation = 0;

  void TakeCurve(const DSCurve& curve) {
    keys.clear();
    for (const DSCurveKey& key : curve.keys)
      keys.push_back({BitsOf(key.time), BitsOf(key.value)});
    interpolation = static_cast<std::int32_t>(curve.interpolation);
  }
  void RemoveCurve() {
    keys.clear();
    interpolation = 0;
  }

  friend bool operator==(const HeldProperty&, const HeldProperty&) = default;
};

using HeldProperties = std::array<HeldProperty, kProperties.size()>;

inline std::uint64_t BitsOf(const DSVariant& value) {
  return value.type == DSValueType::Float64 ? BitsOf(value.number) : static_cast<std::uint32_t>(value.whole);
}

inline HeldProperties HeldBy(IDSProperties& effect) {
  HeldProperties held;
  for (std::size_t i = 0; i < held.size(); ++i) {
    DSVariant value;
    const DSCurve* curve = nullptr;
    effect.GetValue(kProperties[i].guid, &value);
    effect.GetCurve(kProperties[i].guid, &curve);
    held[i].plain = BitsOf(value);
    if (curve != nullptr) held[i].TakeCurve(*curve);
  }
  return held;
}

}  // namespace vblur::host
