// Sizes in percent of the picture's width, such as a Blur of 10%, which become pixels when the picture is known. Both
// directions count the width, so that a round blur stays round.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/jobs/Job.h"
#include "properties/PropertyTable.h"

namespace vblur::cli {

// Whether the text gives values of this property, a size in pixels, in percent; keys may mix both.
bool IsInPercent(const Property& property, std::string_view text);
// Refuses such a text where no picture's width is meant. Throws host::Failure (wrong usage) that begins with `place`.
void RefusePercent(std::string_view place, std::string_view text);
// Refuses what is wrong in such a text whatever the picture. Throws host::Failure (wrong usage) that begins with the
// property.
void CheckPercent(const Property& property, std::string_view text);
// Sets the property of a job. 100% are the pixels of its first input's display window at full resolution, in its first
// frame; without an input, those of its output. Throws host::Failure: cannot read, and wrong usage for a size beyond
// the property's range.
void SetInPercent(host::Job& job, const Property& property, const std::string& text, std::int64_t mostPixels);

}  // namespace vblur::cli
