#include <cmath>
#include <string>
#include <variant>

#include "host/properties/PropertyFile.h"
#include "host/properties/PropertyText.h"
#include "tests/fuzz/FileChecks.h"
#include "tests/fuzz/FileFuzz.h"

namespace vblur::test {

namespace {

using host::PropertyStore;

void CheckSetting(const PropertyStore& store, const Property& property, const PropertyStore::Setting& setting) {
  const std::string text = host::FormatSetting(property, setting);
  Demand(host::ParseSetting(property, text) == setting, "a setting's text is that of another one: " + text);
  const auto* curve = std::get_if<host::Curve>(&setting);
  if (curve == nullptr) {
    Demand(host::IsAllowed(property, std::get<double>(setting)), "a value that is not allowed: " + text);
    return;
  }
  for (const host::CurveKey& key : curve->keys)
    Demand(store.ValueAt(property.guid, key.time) == key.value, "a curve that misses its key: " + text);
}

}  // namespace

bool CheckPropertyFile(std::string_view bytes) {
  PropertyStore store;
  if (!Accepts([&] { store = host::ParseProperties(bytes); })) return false;
  const std::string text = host::FormatProperties(store);
  const PropertyStore again = host::ParseProperties(text);
  Demand(again == store, "the properties are others after their file:\n" + text);
  Demand(host::FormatProperties(again) == text, "a property file is another one when it is written again:\n" + text);
  for (const auto& [guid, setting] : store.Settings())
    CheckSetting(store, *host::FindProperty(guid), setting);
  return true;
}

}  // namespace vblur::test
