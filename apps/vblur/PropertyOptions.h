// One option for each of the effect's properties, made from the property table.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "host/files/PictureInfo.h"
#include "host/jobs/Job.h"
#include "host/properties/PropertyStore.h"
#include "properties/PropertyTable.h"

namespace vblur::cli {

// `--blur`, `--mix-back`, ...: each puts its value into the store, which must outlive the parsing. A Blur in percent of
// the picture's width goes to `percentBlur`; without it, percentages are refused.
void AddPropertyOptions(CLI::App& app, host::PropertyStore& store, std::string* percentBlur = nullptr);

// "0 to 720", "Blur, Sharpen", "on or off".
std::string DescribeValues(const Property& property);
// The property's heading in the help.
std::string PropertyGroup(const Property& property);

// `--set NAME=VALUE`, for commands that take their properties from a job.
void AddSetOption(CLI::App& app, std::vector<std::string>& assignments);
// Reads the job's first picture for a Blur in percent of its width. Throws host::Failure; what is wrong in an
// assignment begins with the option.
void ApplyAssignments(const std::vector<std::string>& assignments, host::Job& job,
                      std::int64_t mostPixels = host::ReadChoice::kMostPixels);

}  // namespace vblur::cli
