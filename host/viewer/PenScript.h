// Pen scripts: what a person would do in the viewer, one event a line.
//
//   move X Y            the pen moves
//   down X Y [BUTTON]   a button goes down, the first one where none is named
//   up X Y              it is lifted
//   time T              the viewer shows another time
//   set NAME VALUE      a property changes, as on the command line: "set Blur 24", "set Crop Left 0:0,24:50"
//   snap FILE           the picture as it now is
//
// Positions are pixels of the frame, y upwards, from its lower left corner. What stands behind a # is a comment, and
// empty lines mean nothing.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "host/properties/PropertyStore.h"
#include "host/viewer/ViewGeometry.h"

namespace vblur::host {

struct PenEvent {
  enum class Kind { Move, Down, Up, Time, Set, Snap };

  Kind kind = Kind::Move;
  std::string place;        // "FILE:LINE", for messages
  FramePoint point;         // Move, Down, Up
  std::int32_t button = 0;  // likewise; 0 for a move with no button down
  double time = 0.0;
  GUID property;
  PropertyStore::Setting setting;
  std::filesystem::path file;  // in the script's folder where it names no other
};

// Reads a script whole. Throws Failure: cannot read for a file that is missing, unreadable or larger than 16 MiB; wrong
// usage, "FILE:LINE: " and what was expected, for a line that says nothing of the above, a pen that is lifted
// without being down or pressed twice, one that is not lifted at the end, and a picture that is written twice or in
// no known format.
std::vector<PenEvent> ReadPenScript(const std::filesystem::path& path);

// The same from text, for pictures in a folder; `name` stands in messages for the file's.
std::vector<PenEvent> ParsePenScript(std::string_view text, const std::string& name,
                                     const std::filesystem::path& folder);

}  // namespace vblur::host
