// How an output file stores what it holds, as far as the job says so; otherwise as the input's file does.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/base/NameMatch.h"

namespace vblur::host {

// Fewer bits before more, whole numbers before floats.
enum class SampleType : std::uint8_t { Unsigned8, Unsigned10, Unsigned12, Unsigned16, Half, Float };

// By SampleType.
inline constexpr std::array<std::string_view, 6> kSampleTypeNames{"uint8",  "uint10", "uint12",
                                                                  "uint16", "half",   "float"};

constexpr std::string_view NameOf(SampleType type) {
  return kSampleTypeNames[static_cast<std::size_t>(type)];
}

inline std::optional<SampleType> FindSampleType(std::string_view name) {
  const auto found =
      std::ranges::find_if(kSampleTypeNames, [&](std::string_view each) { return EqualIgnoringCase(each, name); });
  if (found == kSampleTypeNames.end()) return std::nullopt;
  return static_cast<SampleType>(found - kSampleTypeNames.begin());
}

struct OutputStorage {
  std::optional<SampleType> type{};
  std::optional<std::string> compression{};  // by the format's names
  std::optional<std::int32_t> quality{};     // 1 to 100, of formats that lose something
  std::optional<std::string> format{};       // the extension of a format; absent: that of the file name

  friend bool operator==(const OutputStorage&, const OutputStorage&) = default;
};

}  // namespace vblur::host
