#include "apps/vblur/PropertyOptions.h"

#include "apps/vblur/OptionText.h"
#include "host/base/Failure.h"
#include "host/properties/PropertyText.h"

namespace vblur::cli {

namespace {

std::string Form(const Property& property) {
  switch (property.control) {
    case PropertyControl::List: return "ENTRY";
    case PropertyControl::OnOff: return "on|off";
    case PropertyControl::Number: break;
  }
  return property.IsAnimated() ? "NUMBER|TIME:NUMBER,..." : "NUMBER";
}

std::string Help(const Property& property) {
  std::string help(property.hint);
  if (!help.empty() && help.back() == '.') help.pop_back();
  if (property.id == PropertyId::Aspect) help += " (100 along x only, -100 along y only)";
  return help + ": " + DescribeValues(property) + " [" + host::FormatValue(property, property.defaultValue) + "]";
}

}  // namespace

std::string DescribeValues(const Property& property) {
  if (property.control == PropertyControl::OnOff) return "on or off";
  if (property.control == PropertyControl::Number) return host::FormatRange(property);
  std::string entries;
  for (const std::string_view entry : property.entries) {
    if (!entries.empty()) entries += ", ";
    entries += entry;
  }
  return entries;
}

std::string PropertyGroup(const Property& property) {
  if (property.id <= PropertyId::Method) return "Blur";
  if (property.id <= PropertyId::SourceGain) return "Mix back";
  if (property.id == PropertyId::HideOverlayControls) return "Viewer";
  if (property.id <= PropertyId::MaskAlpha) return "Masks";
  if (property.id <= PropertyId::BlankCropped) return "Crop";
  return "Transition";
}

void AddPropertyOptions(CLI::App& app, host::PropertyStore& store) {
  for (const Property& property : kProperties) {
    const auto set = [&store, &property](const std::string& text) {
      store.Set(property.guid, host::ParseSettingInRange(property, text));
    };
    AddTextOption(app, "--" + host::OptionName(property), Form(property), Help(property), set)
        ->group(PropertyGroup(property));
  }
}

void AddSetOption(CLI::App& app, std::vector<std::string>& assignments) {
  app.add_option("--set", assignments, "Change a property: \"Blur=24\", \"Effect Gain=0:100,24:50\"; repeatable")
      ->type_name("NAME=VALUE")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->group("Properties");
}

void ApplyAssignments(const std::vector<std::string>& assignments, host::PropertyStore& properties) {
  for (const std::string& assignment : assignments) {
    try {
      host::ApplyAssignment(properties, assignment);
    } catch (const host::Failure& failure) {
      host::Refuse("--set", failure.what());
    }
  }
}

}  // namespace vblur::cli
