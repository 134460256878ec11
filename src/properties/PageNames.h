// The names of the property pages; the effect gets that of the page in front.
#pragma once

#include <array>
#include <string_view>

#include "ClassIds.h"

namespace vblur::pages {

// Three go by the name of their class, two by one of their own.
inline constexpr std::string_view kFullBlur = classes::NameOf(classes::kFullBlurPPG);
inline constexpr std::string_view kTransitionBlur = classes::NameOf(classes::kTransitionBlurPPG);
inline constexpr std::string_view kTransition = "transition";
inline constexpr std::string_view kHelp = classes::NameOf(classes::kHelpPPG);
inline constexpr std::string_view kCrop = "crop";

// Not inline: g++ for Windows puts a constant of addresses into other sections in other files, and its linker takes it
// for two.
constexpr std::array kAll{kFullBlur, kTransitionBlur, kTransition, kHelp, kCrop};

struct NamedPage {
  std::string_view name;
  GUID clsid;
};

// Likewise, with the class of each.
inline constexpr std::array<NamedPage, kAll.size()> kNamed{{{kFullBlur, classes::kFullBlurPPG},
                                                            {kTransitionBlur, classes::kTransitionBlurPPG},
                                                            {kTransition, classes::kHvTransitionPPG},
                                                            {kHelp, classes::kHelpPPG},
                                                            {kCrop, classes::kFullCropPPG}}};

// Empty for another class.
constexpr std::string_view NameOf(const GUID& clsid) {
  for (const NamedPage& page : kNamed) {
    if (page.clsid == clsid) return page.name;
  }
  return {};
}

// The pages that show the circle; the crop page shows the crop box.
constexpr bool ShowsCircle(std::string_view page) {
  return page == kFullBlur || page == kTransitionBlur || page == kTransition || page == kHelp;
}
constexpr bool ShowsCropBox(std::string_view page) {
  return page == kCrop;
}

}  // namespace vblur::pages
