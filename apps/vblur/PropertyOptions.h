// One option for each of the effect's properties, made from the property table.
#pragma once

#include <string>
#include <vector>

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

// `--set NAME=VALUE`, for commands that take their properties from a job.
void AddSetOption(CLI::App& app, std::vector<std::string>& assignments);
// Throws host::Failure (wrong usage) that begins with the option.
void ApplyAssignments(const std::vector<std::string>& assignments, host::PropertyStore& properties);

}  // namespace vblur::cli
