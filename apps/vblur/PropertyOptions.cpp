#include "apps/vblur/PropertyOptions.h"

#include "apps/vblur/OptionText.h"
#include "apps/vblur/PercentSize.h"
#include "host/base/Failure.h"
#include "host/properties/PropertyText.h"

namespace vblur::cli {

namespace {

std::string Form(const Property& property, bool takesPercent) {
  switch (property.control) {
    case PropertyControl::List: return "ENTRY";
    case PropertyControl::OnOff: return "on|off";
    case PropertyControl::Number: break;
  }
  if (takesPercent) return "NUMBER|PERCENT%|TIME:NUMBER,...";
  return property.IsAnimated() ? "NUMBER|TIME:NUMBER,..." : "NUMBER";
}

std::string Help(const Property& property, bool takesPercent) {
  std::string help(property.hint);
  if (!help.empty() && help.back() == '.') help.pop_back();
  if (property.id == PropertyId::Aspect) help += " (100 along x only, -100 along y only)";
  if (takesPercent) help += ", or percent of the picture's width, along x and y alike";
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

void AddPropertyOptions(CLI::App& app, host::PropertyStore& store, std::string* percentBlur) {
  for (const Property& property : kProperties) {
    const bool takesPercent = percentBlur != nullptr && property.id == PropertyId::Blur;
    const auto set = [=, &store, &property](const std::string& text) {
      if (takesPercent && IsInPercent(property, text)) {
        CheckPercent(property, text);
        *percentBlur = text;
        return;
      }
      if (IsInPercent(property, text)) RefusePercent(property.name, text);
      store.Set(property.guid, host::ParseSettingInRange(property, text));
    };
    AddTextOption(app, "--" + host::OptionName(property), Form(property, takesPercent), Help(property, takesPercent),
                  set)
        ->group(PropertyGroup(property));
  }
}

void AddSetOption(CLI::App& app, std::vector<std::string>& assignments) {
  app.add_option("--set", assignments, "Change a property: \"Blur=24\", \"Effect Gain=0:100,24:50\"; repeatable")
      ->type_name("NAME=VALUE")
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->group("Properties");
}

void ApplyAssignments(const std::vector<std::string>& assignments, host::Job& job, std::int64_t mostPixels) {
  for (const std::string& assignment : assignments) {
    try {
      const std::size_t equals = assignment.find('=');
      const Property* const property =
          equals == std::string::npos ? nullptr : host::FindPropertyNamed(assignment.substr(0, equals));
      if (property != nullptr && IsInPercent(*property, assignment)) {
        SetInPercent(job, *property, assignment.substr(equals + 1), mostPixels);
      } else {
        host::ApplyAssignment(job.properties, assignment);
      }
    } catch (const host::Failure& failure) {
      if (failure.Code() != host::ExitCode::WrongUsage) throw;
      host::Refuse("--set", failure.what());
    }
  }
}

}  // namespace vblur::cli
