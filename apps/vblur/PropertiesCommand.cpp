// vblur properties [NAME]: the effect's properties, from the property table.
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "apps/vblur/Commands.h"
#include "apps/vblur/FlatAreaWarning.h"
#include "apps/vblur/LoadServer.h"
#include "apps/vblur/OptionText.h"
#include "apps/vblur/PropertyOptions.h"
#include "host/hosted/CallTrace.h"
#include "host/hosted/HostedEffect.h"
#include "host/properties/PropertyText.h"
#include "properties/ClassIds.h"

namespace vblur::cli {

namespace {

using Json = nlohmann::ordered_json;

std::string KindName(const Property& property) {
  switch (property.control) {
    case PropertyControl::List: return "list";
    case PropertyControl::OnOff: return "on or off";
    case PropertyControl::Number: break;
  }
  return property.IsAnimated() ? "animated" : "number";
}

const char* TypeName(DSValueType type) {
  switch (type) {
    case DSValueType::Integer32: return "integer32";
    case DSValueType::Float64: return "float64";
    case DSValueType::Boolean32: return "boolean32";
  }
  return "";
}

const char* CapabilityName(PropertyCapability capability) {
  switch (capability) {
    case PropertyCapability::Plain: return "plain";
    case PropertyCapability::Animated: return "animated";
    case PropertyCapability::PlainHidden: return "plain hidden";
  }
  return "";
}

std::string DefaultText(const Property& property) {
  return host::FormatValue(property, property.defaultValue);
}

// Within a version of the document fields are only added, never renamed or removed.
Json Describe(const Property& property) {
  Json object = {{"name", property.name},
                 {"guid", host::FormatGuid(property.guid)},
                 {"shownName", property.shownName},
                 {"option", "--" + host::OptionName(property)},
                 {"group", PropertyGroup(property)},
                 {"kind", KindName(property)},
                 {"type", TypeName(property.type)},
                 {"capability", {{"name", CapabilityName(property.capability)}, {"value", property.capability}}},
                 {"animated", property.IsAnimated()},
                 {"default", property.defaultValue},
                 {"minimum", property.minimum},
                 {"maximum", property.maximum}};
  if (property.control == PropertyControl::List) {
    object["entries"] = std::vector<std::string>(property.entries.begin(), property.entries.end());
    object["defaultText"] = DefaultText(property);
  }
  object["hint"] = property.hint;
  return object;
}

Json DescribeClasses() {
  Json object = Json::object();
  for (const auto& [name, id] : classes::kNamed)
    object[std::string(name)] = host::FormatGuid(id);
  return object;
}

// Long lists are shown in full by `properties NAME` only.
std::string ShortValues(const Property& property) {
  constexpr std::size_t kLongest = 34;
  std::string values = DescribeValues(property);
  if (property.control != PropertyControl::List || values.size() <= kLongest) return values;
  return std::to_string(property.entries.size()) + " entries, " + std::string(property.entries.front()) + " to " +
         std::string(property.entries.back());
}

void PrintTable() {
  constexpr const char* kRow = "%-29s %-31s %-10s %-23s %-35s %s\n";
  std::printf(kRow, "Name", "Option", "Kind", "Default", "Values", "Meaning");
  for (const Property& property : kProperties) {
    const std::string option = "--" + host::OptionName(property);
    std::printf(kRow, std::string(property.name).c_str(), option.c_str(), KindName(property).c_str(),
                DefaultText(property).c_str(), ShortValues(property).c_str(), std::string(property.hint).c_str());
  }
}

void PrintProperty(const Property& property) {
  std::printf("%s\n  %s\n", std::string(property.name).c_str(), std::string(property.hint).c_str());
  std::printf("  Option:  --%s\n", host::OptionName(property).c_str());
  std::printf("  Kind:    %s%s\n", KindName(property).c_str(),
              property.IsAnimated() ? ": one value, or time:value,time:value,..." : "");
  std::printf("  Default: %s\n", DefaultText(property).c_str());
  if (property.control != PropertyControl::List) {
    std::printf("  Values:  %s\n", DescribeValues(property).c_str());
    return;
  }
  std::printf("  Entries:\n");
  for (std::size_t i = 0; i < property.entries.size(); ++i) {
    std::printf("    %2zu  %s\n", i, std::string(property.entries[i]).c_str());
  }
}

class PropertiesCommand : public Command {
 public:
  explicit PropertiesCommand(CLI::App& parent)
      : Command(parent, "properties", "Print the effect's properties, or all about one") {
    App()->add_option("NAME", name_, "One property")->type_name("");
    App()->add_flag("--json", json_, "As JSON, with the ids of properties and classes");
    AddTextOption(*App(), "--size", "N", "With Blur: what this size stands for; repeatable", [](const std::string&) {})
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->expected(1);
  }

  host::ExitCode Run(const GlobalOptions& global, Terminal&) override {
    const auto sizes = Sizes();
    if (name_.empty()) {
      json_ ? PrintAllAsJson() : PrintTable();
      return host::ExitCode::Done;
    }
    const Property& property = host::PropertyNamed(name_);
    const bool isBlur = property.id == PropertyId::Blur;
    if (!isBlur && App()->count("--size") > 0) {
      throw host::Failure(host::ExitCode::WrongUsage, "--size: goes with the property Blur only");
    }
    if (isBlur) server_ = LoadServer(global);
    json_ ? PrintAsJson(property, sizes) : PrintAsText(property, sizes);
    return host::ExitCode::Done;
  }

 private:
  std::vector<double> Sizes() const {
    const auto given = App()->get_option("--size")->results();
    if (given.empty()) return {0.0, 1.0, 2.0, 5.0, 10.0, 20.0, 50.0, 100.0, 200.0, 400.0, 700.0, 720.0};
    if (name_.empty()) throw host::Failure(host::ExitCode::WrongUsage, "--size: goes with the property Blur only");
    std::vector<double> sizes;
    for (const std::string& text : given)
      sizes.push_back(ParseNumber("--size", text));
    return sizes;
  }

  static void PrintAllAsJson() {
    Json all = {{"version", 1}, {"classes", DescribeClasses()}, {"properties", Json::array()}};
    for (const Property& property : kProperties)
      all["properties"].push_back(Describe(property));
    std::printf("%s\n", all.dump(2).c_str());
  }

  BlurSizeFacts FactsOf(double size) const {
    return host::HostedEffect(server_->CreateEffect()).DescribeBlurSize(size);
  }

  void PrintAsJson(const Property& property, const std::vector<double>& sizes) const {
    Json object = Describe(property);
    if (property.id == PropertyId::Blur) {
      for (const double size : sizes) {
        const BlurSizeFacts facts = FactsOf(size);
        object["sizes"].push_back(
            {{"size", size}, {"boxRadius", facts.boxRadius}, {"sigma", facts.sigma}, {"flatGain", facts.flatGain}});
      }
    }
    std::printf("%s\n", object.dump(2).c_str());
  }

  void PrintAsText(const Property& property, const std::vector<double>& sizes) const {
    PrintProperty(property);
    if (property.id != PropertyId::Blur) return;
    std::printf("\n  What a size stands for, at full resolution:\n");
    std::printf("  %10s %14s %12s %12s\n", "Size", "Box radius", "Sigma", "Flat area");
    for (const double size : sizes) {
      const BlurSizeFacts facts = FactsOf(size);
      std::printf("  %10s %11.3f px %9.3f px %10.3f %%\n", host::FormatNumber(size).c_str(), facts.boxRadius,
                  facts.sigma, facts.flatGain * 100.0);
    }
    std::printf(
        "\n  Three boxes of the radius run along each axis. Sigma is the standard deviation of all three together.\n"
        "  Flat area is what a picture of one colour keeps of it: the filter's own constants decide it.\n");
  }

  std::string name_;
  bool json_ = false;
  std::unique_ptr<host::EffectServer> server_;
};

}  // namespace

std::unique_ptr<Command> MakePropertiesCommand(CLI::App& parent) {
  return std::make_unique<PropertiesCommand>(parent);
}

}  // namespace vblur::cli
