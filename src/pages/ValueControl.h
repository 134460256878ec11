// One control of a page with its property and the value that it shows.
#pragma once

#include <cstdint>
#include <type_traits>

#include "platform/CDSPropertyPage.h"
#include "properties/PropertyTable.h"

namespace vblur {

class HvDsPPG;

// What a page says of a control; names, ranges and texts are the property's.
struct ControlRow {
  std::int32_t controlId = 0;
  std::int32_t labelId = 0;  // 0: it has no label of its own
  PropertyId property{};
  // Of the control map; kAnimated says that the value may have keys.
  std::int32_t flags = 0;

  constexpr const Property& Of() const { return PropertyOf(property); }
};

// Value is a double, a 32-bit integer or a bool: the bound variable of the control.
template <class Value>
struct ValueControl {
  static_assert(std::is_same_v<Value, double> || std::is_same_v<Value, std::int32_t> || std::is_same_v<Value, bool>);
  struct NotAnimated {};
  using Animated = std::conditional_t<std::is_same_v<Value, double>, std::int32_t, NotAnimated>;

  HvDsPPG* page = nullptr;
  std::uint32_t controlId = 0;  // 0: none
  std::uint32_t labelId = 0;
  GUID property = GUID_NO_PROPERTY;
  std::uint8_t localOnly = 0;  // the value is never written to or read from the property
  Value value{};
  [[no_unique_address]] Animated animated{};  // 1: the property has a value at each time

  ValueControl() = default;
  ValueControl(HvDsPPG& owner, const ControlRow& row)
      : page(&owner),
        controlId(static_cast<std::uint32_t>(row.controlId)),
        labelId(static_cast<std::uint32_t>(row.labelId)),
        property(row.Of().guid) {
    if constexpr (std::is_same_v<Value, double>) animated = row.Of().IsAnimated() ? 1 : 0;
  }

  // Keeps the value, writes the property and moves the control. A failed write leaves the kept value changed.
  void Set(Value newValue);
  // The kept value; while a change is being reported, the property's. 0 without a page.
  Value Get() const;
  // Reads the property; false for none and on failure.
  bool Read(Value& result) const;
};

}  // namespace vblur
