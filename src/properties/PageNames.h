// The names by which the effect knows the property page that comes to the front.
#pragma once

#include <array>
#include <string_view>

namespace vblur::pages {

inline constexpr std::string_view kFullBlur = "FullBlurPPG";
inline constexpr std::string_view kTransitionBlur = "TransitionBlurPPG";
inline constexpr std::string_view kTransition = "transition";
inline constexpr std::string_view kHelp = "HelpPPG";
inline constexpr std::string_view kCrop = "crop";

inline constexpr std::array kAll{kFullBlur, kTransitionBlur, kTransition, kHelp, kCrop};

// The pages over which the circle is seen; the crop box is seen over the crop page.
constexpr bool ShowsCircle(std::string_view page) {
  return page == kFullBlur || page == kTransitionBlur || page == kTransition || page == kHelp;
}
constexpr bool ShowsCropBox(std::string_view page) {
  return page == kCrop;
}

}  // namespace vblur::pages
