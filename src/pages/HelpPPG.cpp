#include "pages/HelpPPG.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "pages/ControlMap.h"
#include "pages/OpenManual.h"
#include "properties/ClassIds.h"
#include "properties/PageNames.h"
#include "resources/Numbers.h"

namespace vblur {

namespace {

// Not tied to the property that gives it its name: the host must not write it.
constexpr CDSPPGControlMapEntry Untied(CDSPPGControlMapEntry entry) {
  entry.property = GUID_NO_PROPERTY;
  return entry;
}

}  // namespace

struct HelpPPG::Rows {
  static constexpr ControlRow kHide{resources::help::kHideOverlayControls, 0, PropertyId::HideOverlayControls,
                                    control_flags::kSelection};
};

HelpPPG::HelpPPG()
    : CountedPage(resources::kHelpDialog, resources::strings::kHelpTitle, pages::kHelp.data()),
      hide_(*this, Rows::kHide) {
  hide_.localOnly = 1;
}

HelpPPG::~HelpPPG() {
  if (std::exchange(blurEffect_, nullptr) != nullptr) DisconnectEffect();
}

CDSPPGControlMap* HelpPPG::GetControlMap() {
  using namespace control_map;
  static constexpr CDSPPGControlMapEntry kEntries[] = {
      Untied(Control<&HelpPPG::hide_>(Rows::kHide, &Run<&HelpPPG::HideOverlay>)),
      Button(resources::help::kOnlineHelp, kButtonWithTip, resources::strings::kOnlineHelpHint,
             &Run<&HelpPPG::ShowManual>),
      kEnd,
  };
  static CDSPPGControlMap map{&m_ControlMap, kName, kEntries};
  map.Initialize();
  return &map;
}

void HelpPPG::ShowText(std::int32_t controlId, std::int32_t stringId) {
  constexpr std::size_t kMost = 2048;
  std::array<char16_t, kMost> text{};
  const std::int32_t length =
      LoadStringW(GetResourceInstance(), stringId, text.data(), static_cast<std::int32_t>(text.size()));
  std::string narrow(static_cast<std::size_t>(length), ' ');
  std::transform(text.begin(), text.begin() + length, narrow.begin(), [](char16_t c) { return static_cast<char>(c); });
  SetControlText(controlId, narrow.c_str());
}

HRESULT HelpPPG::OnInitDialog() {
  const HRESULT result = CDSPropertyPage::OnInitDialog();
  hide_.Set(false);
  effect = blurEffect_ = static_cast<Blur*>(QueryEffect(kBlurObject));
  ConnectOverlay();
  ShowText(resources::help::kProduct, resources::strings::kProductLine);
  ShowText(resources::help::kOwner, resources::strings::kOwnerLine);
  ShowText(resources::help::kRights, resources::strings::kRightsLine);
  ShowText(resources::help::kVersion, resources::strings::kVersionLine);
  ShowText(resources::help::kText, resources::strings::kHelpText);
  return result;
}

void HelpPPG::HideOverlay() {
  HvTInteract* const tool = effect == nullptr ? nullptr : effect->OverlayTool();
  if (tool != nullptr) tool->ShowControls(!hide_.Get());
}

void HelpPPG::ShowManual() {
  OpenManual("help");
}

}  // namespace vblur
