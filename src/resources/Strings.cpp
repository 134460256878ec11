#include "resources/Strings.h"

#include <algorithm>
#include <array>

#include "properties/PropertyTable.h"

namespace vblur::resources {
namespace {

constexpr std::array kOwn = {
    ModuleString{1, "V_Blur"},
    ModuleString{2, "Halvern's Blur and Sharpen Effect"},
    ModuleString{4, "V_Blur's main PPG"},
    ModuleString{6, "V_Blur's main PPG"},
    ModuleString{8, "Help and Copyright Property Page for V_Blur"},
    ModuleString{4997, "V_Wibble's main PPG (with edge methods)"},  // of no page of this effect
    ModuleString{5499, "Transition PPG for Halvern DS Transitions"},
};

constexpr std::size_t kCount = [] {
  std::size_t count = kOwn.size();
  for (const Property& property : kProperties)
    count += 2 + property.entries.size();
  return count;
}();

constexpr auto kStrings = [] {
  std::array<ModuleString, kCount> strings{};
  auto end = std::copy(kOwn.begin(), kOwn.end(), strings.begin());
  for (const Property& property : kProperties) {
    *end++ = {property.nameString, property.shownName};
    *end++ = {property.hintString, property.hint};
    // A list's entries follow its hint.
    for (std::size_t i = 0; i < property.entries.size(); ++i)
      *end++ = {property.hintString + 1 + static_cast<std::int32_t>(i), property.entries[i]};
  }
  return strings;
}();

}  // namespace

std::span<const ModuleString> Strings() {
  return kStrings;
}

}  // namespace vblur::resources
