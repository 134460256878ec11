// Property files: saved properties, plain values and curves, to apply to another effect.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "host/base/OutputFileCommit.h"
#include "host/properties/PropertyStore.h"
#include "platform/IDSProperties.h"

namespace vblur::host {

// For programs that let people edit an effect. Its current properties: curves, and plain values that are not the
// default. Throws Failure (wrong usage) when the effect lacks one of the table.
PropertyStore PropertiesOf(IDSProperties& effect);

// Reads {"version": 1, "properties": {...}}, with properties as in a job file. Throws Failure, whose line
// begins with the file's name, as ReadJobFile does.
PropertyStore ReadPropertyFile(const std::filesystem::path& path);

// The same from text. Failures name no file.
PropertyStore ParseProperties(std::string_view text);

// A complete temporary file, from which ReadPropertyFile reads equal properties, to the last bit. It takes its name,
// also an existing one's, when committed. Throws Failure (cannot write).
std::unique_ptr<OutputFileCommit> WritePropertyFileBeside(const PropertyStore& properties,
                                                          const std::filesystem::path& path);

// The text of a property file.
std::string FormatProperties(const PropertyStore& properties);

}  // namespace vblur::host
