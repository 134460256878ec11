// Property values and curves as JSON: an object of the properties' names and values, the same in every
// file that holds properties.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "host/base/JsonPlace.h"
#include "host/properties/PropertyStore.h"

namespace vblur::host {

// Throws Failure (wrong usage) with the path of what is wrong.
PropertyStore ReadProperties(const JsonPlace& place);

// What differs from the defaults, in the order of the table; list entries as text.
nlohmann::ordered_json PropertiesToJson(const PropertyStore& store);

// The text of a file that may hold "properties": one line for each field of the document and each
// property, everything else on its line, numbers to the last bit. Throws nlohmann::json::type_error for
// text that is not UTF-8.
std::string LayoutJson(const nlohmann::ordered_json& document);

}  // namespace vblur::host
