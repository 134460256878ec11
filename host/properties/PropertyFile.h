// Property files: saved properties, plain values and curves, to apply to another effect.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "host/base/OutputFileCommit.h"
#include "host/properties/PropertyStore.h"
#include "platform/IDSProperties.h"

namespace vblur::host {

// The current properties of an effect: curves, and plain values that are not the default. Throws Failure (wrong usage)
// when the effect lacks one of the table.
PropertyStore PropertiesOf(IDSProperties& effect);

// Reads {"version": 1, "properties": {...}}, with properties as in a job file. Throws Failure, whose line
// begins with the file's name, as ReadJobFile does.
PropertyStore ReadPropertyFile(const std::filesystem::path& path);

// ReadPropertyFile reads equal properties, to the last bit. The file appears when complete and replaces an existing
// one. Throws Failure (cannot write).
void WritePropertyFile(const PropertyStore& properties, const std::filesystem::path& path);
// Without taking the name yet, which the caller does.
std::unique_ptr<OutputFileCommit> WritePropertyFileBeside(const PropertyStore& properties,
                                                          const std::filesystem::path& path);

}  // namespace vblur::host
