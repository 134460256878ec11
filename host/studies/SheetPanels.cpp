#include "host/studies/SheetPanels.h"

#include <algorithm>
#include <cstdio>
#include <span>

#include "host/base/Failure.h"
#include "host/properties/PropertyText.h"

namespace vblur::host {

namespace {

constexpr double kSizes[] = {0.0, 1.0, 2.5, 6.0, 15.0, 40.0, 100.0, 250.0};
constexpr int kRampSteps = 8;
// Keys and fade points are percentages of the transition.
constexpr double kTransitionLength = 100.0;

struct Default {
  PropertyId id;
  double value;
};

// Defaults of a sheet; the user's values win.
std::span<const Default> DefaultsOf(SheetKind kind) {
  using enum PropertyId;
  static constexpr Default kEdges[] = {{Blur, 4.0},     {CropLeft, 30.0},     {CropRight, 70.0},   {CropBottom, 30.0},
                                       {CropTop, 70.0}, {CropColourR, 100.0}, {CropColourG, 45.0}, {CropColourB, 0.0}};
  static constexpr Default kRamps[] = {{Blur, 24.0}};
  if (kind == SheetKind::Edges) return kEdges;
  if (kind == SheetKind::Ramps) return kRamps;
  return {};
}

std::vector<PropertyId> VariedBy(SheetKind kind) {
  switch (kind) {
    case SheetKind::Channels: return {PropertyId::Channels};
    case SheetKind::MixBack: return {PropertyId::MixBack};
    case SheetKind::Edges: return {PropertyId::XEdgeMethod, PropertyId::YEdgeMethod};
    case SheetKind::Sizes: return {PropertyId::Blur};
    case SheetKind::Ramps: return {PropertyId::TransitionRamping};
  }
  return {};
}

const GUID& GuidOf(PropertyId id) {
  return PropertyOf(id).guid;
}

PropertyStore CommonProperties(const SheetRequest& request) {
  for (const PropertyId id : VariedBy(request.kind)) {
    if (!request.given.contains(id)) continue;
    Refuse(PropertyOf(id).name, "cannot be set, a sheet of " +
                                    std::string(kSheetNames[static_cast<std::size_t>(request.kind)]) +
                                    " goes through its values");
  }
  PropertyStore common = request.properties;
  for (const Default& setting : DefaultsOf(request.kind)) {
    if (!request.given.contains(setting.id)) common.Set(GuidOf(setting.id), setting.value);
  }
  return common;
}

std::string SettingText(const PropertyStore& store, const Property& property) {
  const PropertyStore::Setting* setting = store.Find(property.guid);
  return std::string(property.name) + " " +
         FormatSetting(property, setting ? *setting : PropertyStore::Setting(property.defaultValue));
}

// Whether a sheet lists a property even at its default.
bool IsAlwaysListed(SheetKind kind, PropertyId id) {
  switch (id) {
    case PropertyId::Blur: return kind != SheetKind::Sizes;
    case PropertyId::Blend: return kind == SheetKind::MixBack;
    case PropertyId::EffectScaling: return kind == SheetKind::Ramps;
    default: return false;
  }
}

std::string DescribeSettings(const SheetPlan& plan, const PropertyStore& common) {
  std::string text;
  for (const Property& property : kProperties) {
    if (common.Find(property.guid) == nullptr && !IsAlwaysListed(plan.kind, property.id)) continue;
    if (!text.empty()) text += ", ";
    text += SettingText(common, property);
    if (property.id == PropertyId::Blur) text += " (panel pixels)";
  }
  return text;
}

void AddPanel(SheetPlan& plan, const PropertyStore& common, std::string label, std::span<const Default> settings) {
  SheetPanel panel;
  panel.label = std::move(label);
  panel.properties = common;
  for (const Default& setting : settings)
    panel.properties.Set(GuidOf(setting.id), setting.value);
  plan.panels.push_back(std::move(panel));
}

// The input, then one panel for each entry of a list.
void PlanList(SheetPlan& plan, const PropertyStore& common, PropertyId id) {
  const Property& list = PropertyOf(id);
  SheetPanel input;
  input.label = "Input";
  input.isInput = true;
  plan.panels.push_back(std::move(input));
  for (std::size_t i = 0; i < list.entries.size(); ++i) {
    const Default setting{id, static_cast<double>(i)};
    AddPanel(plan, common, std::string(list.entries[i]), std::span(&setting, 1));
  }
}

void PlanChannels(SheetPlan& plan, const PropertyStore& common) {
  plan.columns = 4;
  plan.roomWidth = 384;
  plan.roomHeight = 384;
  plan.title = "Channels: what is blurred";
  PlanList(plan, common, PropertyId::Channels);
}

void PlanMixBack(SheetPlan& plan, const PropertyStore& common) {
  plan.columns = 5;
  plan.roomWidth = 320;
  plan.roomHeight = 320;
  plan.showsAlpha = false;
  plan.title = "Mix Back: how the effect goes back onto the input";
  plan.hint =
      "None is the effect alone. Mix takes Blend percent of the input; all others are whole at a Blend of 50, "
      "the effect alone at 0 and the input alone at 100.";
  PlanList(plan, common, PropertyId::MixBack);
}

void PlanEdges(SheetPlan& plan, const PropertyStore& common) {
  plan.columns = 4;
  plan.roomWidth = 384;
  plan.roomHeight = 384;
  plan.showsAlpha = false;
  const auto entries = PropertyOf(PropertyId::XEdgeMethod).entries;
  for (std::size_t y = 0; y < entries.size(); ++y) {
    for (std::size_t x = 0; x < entries.size(); ++x) {
      const Default settings[] = {{PropertyId::XEdgeMethod, static_cast<double>(x)},
                                  {PropertyId::YEdgeMethod, static_cast<double>(y)}};
      AddPanel(plan, common, "X " + std::string(entries[x]) + ", Y " + std::string(entries[y]), settings);
    }
  }
  plan.title = "Edge methods: X across, Y down";
  plan.hint = "Ticks mark the crop. The crop colour comes with an alpha of 0.";
}

void PlanSizes(SheetPlan& plan, const PropertyStore& common, const SizeFacts& facts) {
  plan.columns = 4;
  plan.roomWidth = 384;
  plan.roomHeight = 384;
  for (const double size : kSizes) {
    const Default setting{PropertyId::Blur, size};
    AddPanel(plan, common, "Blur " + FormatNumber(size), std::span(&setting, 1));
    const BlurSizeFacts about = facts(size);
    char note[96];
    std::snprintf(note, sizeof note, "box radius %.2f, sigma %.2f, flat area %.1f %%", about.boxRadius, about.sigma,
                  about.flatGain * 100.0);
    plan.panels.back().note = note;
  }
  plan.title = "Sizes";
  plan.hint = "Blur, radius and sigma in panel pixels. Flat area: what a picture of one colour keeps of it.";
}

void PlanRamps(SheetPlan& plan, const PropertyStore& common) {
  plan.columns = kRampSteps + 1;
  plan.roomWidth = 208;
  plan.roomHeight = 208;
  plan.use = EffectKind::Transition;
  plan.duration = kTransitionLength;
  const auto entries = PropertyOf(PropertyId::TransitionRamping).entries;
  for (std::size_t ramp = 0; ramp < entries.size(); ++ramp) {
    for (int step = 0; step <= kRampSteps; ++step) {
      const Default setting{PropertyId::TransitionRamping, static_cast<double>(ramp)};
      const double time = kTransitionLength * step / kRampSteps;
      AddPanel(plan, common, std::string(entries[ramp]) + "  " + FormatNumber(time) + " %", std::span(&setting, 1));
      plan.panels.back().time = time;
    }
  }
  plan.title = "Transition ramps, one a row";
  plan.hint = "From the first clip to the second; times and keys are in percent of the transition.";
}

}  // namespace

SheetPlan PlanSheet(const SheetRequest& request, const SizeFacts& facts) {
  const PropertyStore common = CommonProperties(request);
  SheetPlan plan;
  plan.kind = request.kind;
  switch (request.kind) {
    case SheetKind::Channels: PlanChannels(plan, common); break;
    case SheetKind::MixBack: PlanMixBack(plan, common); break;
    case SheetKind::Edges: PlanEdges(plan, common); break;
    case SheetKind::Sizes: PlanSizes(plan, common, facts); break;
    case SheetKind::Ramps: PlanRamps(plan, common); break;
  }
  if (request.showsAlpha) plan.showsAlpha = *request.showsAlpha;
  if (!plan.hint.empty()) plan.hint += " ";
  plan.hint += plan.showsAlpha ? "Transparency shows a checkerboard." : "Colours are shown without alpha.";
  plan.settings = DescribeSettings(plan, common);
  return plan;
}

}  // namespace vblur::host
