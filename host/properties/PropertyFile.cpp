#include "host/properties/PropertyFile.h"

#include <array>

#include "host/base/Failure.h"
#include "host/base/JsonText.h"
#include "host/base/TextFile.h"
#include "host/base/Utf8.h"
#include "host/properties/PropertyJson.h"

namespace vblur::host {

namespace {

constexpr std::array<std::string_view, 2> kFields{"version", "properties"};

}  // namespace

PropertyStore PropertiesOf(IDSProperties& effect) {
  PropertyStore store;
  for (const Property& property : kProperties) {
    const Curve* curve = nullptr;
    DSVariant value;
    if (effect.GetCurve(property.guid, &curve) == kOk) {
      store.Set(property.guid, *curve);
    } else if (effect.GetValue(property.guid, &value) == kOk) {
      store.Set(property.guid, value.AsNumber());
    } else {
      Refuse(property.name, "the effect does not have this property");
    }
  }
  return store;
}

PropertyStore ParseProperties(std::string_view text) {
  const nlohmann::json document = ParseJson(text);
  const JsonPlace root(document);
  root.RequireFields(kFields, "{\"version\": 1, \"properties\": {...}}");
  if (const auto version = root.Field("version"); version && version->Value() != 1) version->FailExpected("version 1");
  const auto properties = root.Field("properties");
  if (!properties) root.Fail("properties: missing, expected an object of property names and values");
  return ReadProperties(*properties);
}

PropertyStore ReadPropertyFile(const std::filesystem::path& path) {
  const std::string text = ReadTextFile(path, "property file");
  try {
    return ParseProperties(text);
  } catch (const Failure& failure) {
    Refuse(failure.Code(), Utf8Of(path), failure.what());
  }
}

std::string FormatProperties(const PropertyStore& properties) {
  nlohmann::ordered_json document{{"version", 1}};
  document["properties"] = PropertiesToJson(properties);
  return LayoutJson(document);
}

std::unique_ptr<OutputFileCommit> WritePropertyFileBeside(const PropertyStore& properties,
                                                          const std::filesystem::path& path) {
  return WriteTextBeside(FormatProperties(properties), path, "property file");
}

}  // namespace vblur::host
