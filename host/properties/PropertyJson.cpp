#include "host/properties/PropertyJson.h"

#include <array>
#include <set>
#include <variant>

#include "host/properties/PropertyText.h"

namespace vblur::host {

namespace {

using Json = nlohmann::ordered_json;

Interpolation ReadInterpolation(const JsonPlace& place) {
  constexpr std::string_view kExpected = "\"linear\", \"hold\" or \"smooth\"";
  const auto interpolation = FindInterpolation(place.Text(kExpected));
  if (!interpolation) place.FailExpected(kExpected);
  return *interpolation;
}

Curve ReadCurve(const JsonPlace& place) {
  constexpr std::string_view kExpected = "{\"keys\": [[time, value], ...]}";
  constexpr std::array<std::string_view, 2> kCurveFields{"keys", "interpolation"};
  place.RequireFields(kCurveFields, kExpected);
  const auto keys = place.Field("keys");
  if (!keys) place.FailExpected(kExpected);
  if (!keys->Value().is_array() || keys->Value().empty()) keys->FailExpected("at least one [time, value]");
  Curve curve;
  if (const auto field = place.Field("interpolation")) curve.interpolation = ReadInterpolation(*field);
  for (std::size_t i = 0; i < keys->Value().size(); ++i) {
    const JsonPlace item = keys->Item(i);
    const auto [time, value] = item.NumberPair("[time, value]");
    if (i > 0 && time <= curve.keys.back().time) {
      item.FailExpected("[time, value] with a time after " + FormatNumber(curve.keys.back().time));
    }
    curve.keys.push_back({time, value});
  }
  return curve;
}

// A value as one of the types that the property takes; nothing for any other value.
std::optional<double> ReadPlainValue(const Property& property, const nlohmann::json& value) {
  if (value.is_boolean() && property.control == PropertyControl::OnOff) return value.get<bool>() ? 1.0 : 0.0;
  if (value.is_string()) return FindEntry(property, value.get_ref<const std::string&>());
  if (!value.is_number() || !IsAllowed(property, value.get<double>())) return std::nullopt;
  return value.get<double>();
}

std::string ExpectedJson(const Property& property) {
  if (property.control == PropertyControl::OnOff) return "true or false, 1 or 0";
  if (property.IsAnimated()) return ExpectedValue(property) + " or {\"keys\": [[time, value], ...]}";
  return ExpectedValue(property);
}

void ReadProperty(const JsonPlace& place, const Property& property, PropertyStore& store) {
  if (place.Value().is_object()) {
    if (!property.IsAnimated()) place.FailExpected(ExpectedJson(property) + " since the property is not animated");
    store.Set(property.guid, ReadCurve(place));
  } else if (const auto value = ReadPlainValue(property, place.Value())) {
    store.Set(property.guid, *value);
  } else {
    place.FailExpected(ExpectedJson(property));
  }
}

Json ValueToJson(const Property& property, double value) {
  if (property.control == PropertyControl::Number) return value;
  if (property.control == PropertyControl::OnOff) return value != 0.0;
  return FormatValue(property, value);
}

Json SettingToJson(const Property& property, const PropertyStore::Setting& setting) {
  if (const auto* value = std::get_if<double>(&setting)) return ValueToJson(property, *value);
  const Curve& curve = std::get<Curve>(setting);
  Json json;
  json["keys"] = Json::array();
  for (const CurveKey& key : curve.keys)
    json["keys"].push_back({key.time, key.value});
  if (curve.interpolation != Interpolation::Linear) json["interpolation"] = InterpolationName(curve.interpolation);
  return json;
}

std::string Layout(const Json& json, bool isOpen, const std::string& indent) {
  if (!json.is_structured()) return json.dump();
  const std::string inner = indent + "  ";
  std::string text;
  for (const auto& [name, value] : json.items()) {
    if (!text.empty()) text += isOpen ? ",\n" : ", ";
    if (isOpen) text += inner;
    if (json.is_object()) text += Json(name).dump() + ": ";
    text += Layout(value, isOpen && name == "properties", inner);
  }
  if (json.is_array()) return "[" + text + "]";
  return isOpen ? "{\n" + text + "\n" + indent + "}" : "{" + text + "}";
}

}  // namespace

PropertyStore ReadProperties(const JsonPlace& place) {
  if (!place.Value().is_object()) place.FailExpected("an object of property names and values");
  PropertyStore store;
  std::set<PropertyId> seen;
  for (const auto& [name, value] : place.Value().items()) {
    const JsonPlace item(value, JoinPath(place.Path(), name));
    const Property* property = FindPropertyNamed(name);
    if (property == nullptr) place.Fail(UnknownProperty(name));
    if (!seen.insert(property->id).second) item.Fail("this property is there twice, expected it once");
    ReadProperty(item, *property, store);
  }
  return store;
}

Json PropertiesToJson(const PropertyStore& store) {
  Json json = Json::object();
  for (const Property& property : kProperties) {
    const PropertyStore::Setting* setting = store.Find(property.guid);
    if (setting != nullptr) json[std::string(property.name)] = SettingToJson(property, *setting);
  }
  return json;
}

std::string LayoutJson(const Json& document) {
  return Layout(document, true, "") + "\n";
}

}  // namespace vblur::host
