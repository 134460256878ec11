// One option for each of the effect's properties, made from the property table.
#pragma once

#include <string>

#include <CLI/CLI.hpp>

#include "host/properties/PropertyStore.h"
#include "properties/PropertyTable.h"

namespace vblur::cli {

// `--blur`, `--mix-back`, ...: each puts its value into the store, which must outlive the parsing.
void AddPropertyOptions(CLI::App& app, host::PropertyStore& store);

// "0 to 720", "Blur, Sharpen", "on or off".
std::string DescribeValues(const Property& property);
// The property's heading in the help.
std::string PropertyGroup(const Property& property);

}  // namespace vblur::cli
