// The properties that the user has set, by GUID, as plain values or curves. Others have the property table's default.
#pragma once

#include <map>
#include <string>
#include <variant>

#include "host/properties/Curve.h"
#include "properties/PropertyTable.h"

namespace vblur::host {

// The property of the table with this GUID; null for any other GUID.
const Property* FindProperty(const GUID& guid);

class PropertyStore {
 public:
  using Setting = std::variant<double, Curve>;

  // Setting a property to its default leaves it unset. Throws Failure (wrong usage) for a GUID that is
  // not in the table, a curve on a property that is not animated, and a curve without keys or with
  // times that do not rise strictly. Values are not limited to the control range.
  void Set(const GUID& property, Setting setting);
  // Null when the property has its default.
  const Setting* Find(const GUID& property) const;
  // The value at a time: of the curve, the plain value or the default. The property must be in the table.
  double ValueAt(const GUID& property, double time) const;
  // All that was set, in any order.
  const std::map<GUID, Setting>& Settings() const { return settings_; }

  friend bool operator==(const PropertyStore&, const PropertyStore&) = default;

 private:
  std::map<GUID, Setting> settings_;
};

}  // namespace vblur::host
