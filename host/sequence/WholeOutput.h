// Whether an output that exists is a whole frame.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/files/OutputFormat.h"
#include "host/files/PictureFile.h"

namespace vblur::host {

// What is known of a frame before it is rendered.
struct ExpectedOutput {
  std::vector<std::array<std::int32_t, 2>> sizes{};  // that it may have, in pixels; none: not known
  std::optional<SampleType> type{};                  // of its first colour; nothing: not known
  std::vector<std::string> channels{};               // that it has besides
};

// Why a file is not the frame that a render would write, in a line that begins with the file; empty when it is. Reads
// every row. Throws FileInterrupted.
std::string FlawOfOutput(const std::filesystem::path& file, const OutputFormat& format, const ExpectedOutput& expected,
                         const StopTest& stop);

}  // namespace vblur::host
