#include "resources/Strings.h"

#include <algorithm>
#include <array>

#include "properties/PropertyTable.h"
#include "resources/Numbers.h"

namespace vblur::resources {
namespace {

constexpr std::string_view kProduct = "V_Blur";
constexpr std::string_view kProductDescription = "Halvern's Blur and Sharpen Effect";
constexpr std::string_view kMainPage = "V_Blur's main PPG";
constexpr std::string_view kResetHint = "Reset this page's values to their defaults.";
constexpr std::string_view kSource = "Source";

constexpr std::array kOwn = {
    ModuleString{strings::kName, kProduct},
    ModuleString{strings::kDescription, kProductDescription},
    ModuleString{strings::kFullBlurTitle, kProduct},
    ModuleString{strings::kFullBlurDescription, kMainPage},
    ModuleString{strings::kTransitionBlurTitle, kProduct},
    ModuleString{strings::kTransitionBlurDescription, kMainPage},
    ModuleString{strings::kHelpTitle, "Help"},
    ModuleString{strings::kHelpDescription, "Help and Copyright Property Page for V_Blur"},
    ModuleString{strings::kFullBlurReset, kResetText},
    ModuleString{strings::kFullBlurResetHint, kResetHint},
    ModuleString{strings::kTransitionBlurReset, kResetText},
    ModuleString{strings::kTransitionBlurResetHint, kResetHint},
    ModuleString{strings::kHelpText,
                 "V_Blur can be used to blur or sharpen an image using a fast gaussian filter. The effect is sub-pixel "
                 "accurate that can be animated smoothly over time. It can also be applied to a specific channel "
                 "(including Y/U/V). The Aspect parameter is used to bias the blur in one dimension or the other.\n"},
    ModuleString{strings::kOnlineHelpHint, ""},
    ModuleString{strings::kSource, kSource},
    ModuleString{strings::kSourceHint, kSource},
    ModuleString{strings::kVersionLine, "V_Blur " VBLUR_VERSION},
    ModuleString{strings::kProductLine, kProductDescription},
    ModuleString{strings::kOwnerLine, "Copyright (c) Halvern"},
    ModuleString{strings::kRightsLine, "All rights reserved."},
    ModuleString{strings::kFullCropTitle, "Cropping"},
    ModuleString{strings::kFullCropDescription, "V_Wibble's main PPG (with edge methods)"},  // sic, as hosts know it
    ModuleString{strings::kCropColour, kCropColourText},
    ModuleString{strings::kCropColourHint, PropertyOf(PropertyId::CropColourR).hint},
    ModuleString{strings::kFullCropReset, kResetText},
    ModuleString{strings::kFullCropResetHint, kResetHint},
    ModuleString{strings::kTransitionTitle, "Transition"},
    ModuleString{strings::kTransitionDescription, "Transition PPG for Halvern DS Transitions"},
    ModuleString{strings::kTransitionReset, kResetText},
    ModuleString{strings::kTransitionResetHint, kResetHint},
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
