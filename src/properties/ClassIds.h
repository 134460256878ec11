// The ids by which a host asks for the classes of the server, and those by which pages and overlay
// objects reach the effect itself.
#pragma once

#include <array>
#include <string_view>

#include "../platform/DsTypes.h"

namespace vblur {

namespace classes {

inline constexpr GUID kBlur = MakeGuid("{9D2E2FA1-AE89-11D5-9414-0800690F2F3F}");
inline constexpr GUID kFullBlurPPG = MakeGuid("{7F572B51-C942-43E9-8352-562610995E73}");
inline constexpr GUID kTransitionBlurPPG = MakeGuid("{65F6258C-4AB1-4D6F-BE90-C874FD7A1049}");
inline constexpr GUID kHvTransitionPPG = MakeGuid("{273EAE83-672E-4EDD-9552-00EDDE574A63}");
inline constexpr GUID kHvTInteract = MakeGuid("{0DDF6A46-E387-49E6-A334-827E9F4CB919}");
inline constexpr GUID kHelpPPG = MakeGuid("{4D8CFEBD-D799-406D-B30D-C882AFDB9B51}");
inline constexpr GUID kFullCropPPG = MakeGuid("{9AF03A9A-ED25-4C86-AB7F-8CB19CFC6294}");

struct NamedClass {
  std::string_view name;
  GUID id;
};

// All of them, in the order in which the server registers them.
inline constexpr std::array<NamedClass, 7> kNamed = {{{"Blur", kBlur},
                                                      {"FullBlurPPG", kFullBlurPPG},
                                                      {"TransitionBlurPPG", kTransitionBlurPPG},
                                                      {"HvTransitionPPG", kHvTransitionPPG},
                                                      {"HvTInteract", kHvTInteract},
                                                      {"HelpPPG", kHelpPPG},
                                                      {"FullCropPPG", kFullCropPPG}}};

// Empty for another id.
constexpr std::string_view NameOf(const GUID& id) {
  for (const NamedClass& named : kNamed) {
    if (named.id == id) return named.name;
  }
  return {};
}

}  // namespace classes

// Asking the effect for one of these gives the effect object itself, not one of its interfaces.
inline constexpr GUID kBlurObject = classes::kBlur;
inline constexpr GUID kDsEffectObject = MakeGuid("{53A973D2-298B-11D3-AB9A-0000E8D8077F}");

}  // namespace vblur
