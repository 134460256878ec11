// The names of a job file's fields and values, for its reader and its writer.
#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "host/base/NameMatch.h"
#include "host/jobs/Job.h"

namespace vblur::host::job_fields {

inline constexpr std::array<std::string_view, 20> kJob{
    "version",  "depth", "use", "input",   "input2",  "mask",  "output",      "frames", "start",  "time",
    "duration", "field", "roi", "outside", "project", "proxy", "premultiply", "linear", "steady", "properties"};
inline constexpr std::array<std::string_view, 5> kInput{"file", "position", "size", "origin", "layer"};
inline constexpr std::array<std::string_view, 6> kMask{"file", "position", "size", "origin", "offset", "channel"};
inline constexpr std::array<std::string_view, 12> kOutput{"file",   "position", "size",        "origin",
                                                          "width",  "height",   "renumber",    "initial",
                                                          "format", "type",     "compression", "quality"};
inline constexpr std::array<std::string_view, 2> kProject{"userSize", "worldSize"};

// Named kinds; the others are written as numbers.
inline constexpr std::array<std::pair<std::string_view, EffectKind>, 4> kKinds{{
    {"filter", EffectKind::Filter},
    {"paint", EffectKind::Paint},
    {"transition", EffectKind::Transition},
    {"generator", EffectKind::Generator},
}};

inline std::optional<EffectKind> FindKind(std::string_view name) {
  const auto found =
      std::ranges::find_if(kKinds, [&](const auto& kind) { return EqualIgnoringCase(kind.first, name); });
  if (found == kKinds.end()) return std::nullopt;
  return found->second;
}

}  // namespace vblur::host::job_fields
