// The kinds of contact sheets, and what each panel shows.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/jobs/Job.h"
#include "platform/IVBlurFacts.h"

namespace vblur::host {

enum class SheetKind { Channels, MixBack, Edges, Sizes, Ramps };

// By SheetKind, as typed on the command line.
inline constexpr std::array<std::string_view, 5> kSheetNames = {"channels", "mix-back", "edges", "sizes", "ramps"};

struct SheetPanel {
  std::string label;
  std::string note;  // a second, smaller line; may be empty
  // The untouched input instead of a render.
  bool isInput = false;
  double time = 0.0;
  PropertyStore properties;
};

struct SheetPlan {
  SheetKind kind = SheetKind::Channels;
  std::string title;
  // What all panels have in common, and how to read them.
  std::string settings;
  std::string hint;
  std::int32_t columns = 1;
  // The space for one picture, in pixels.
  std::int32_t roomWidth = 0;
  std::int32_t roomHeight = 0;
  EffectKind use = EffectKind::Filter;
  double duration = 1.0;
  // False: colours alone, and the mean alpha of each panel in words.
  bool showsAlpha = true;
  // In the order of the sheet, row by row from the top left.
  std::vector<SheetPanel> panels;
};

// The user's request. `given` has every property that was named, also with its default.
struct SheetRequest {
  SheetKind kind = SheetKind::Channels;
  PropertyStore properties;
  std::set<PropertyId> given;
  // Absent: the sheet's default.
  std::optional<bool> showsAlpha;
};

using SizeFacts = std::function<BlurSizeFacts(double blur)>;

// Throws Failure (wrong usage) for a given property that the sheet varies.
SheetPlan PlanSheet(const SheetRequest& request, const SizeFacts& facts);

}  // namespace vblur::host
