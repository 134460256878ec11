// Pen scripts: user actions in the viewer, one event per line.
//
//   move X Y            the pen moves
//   down X Y [BUTTON]   a button goes down, 1 by default
//   up X Y              it goes up
//   time T              the viewer shows another time
//   set NAME VALUE      a property changes, as on the command line: "set Blur 24", "set Crop Left 0:0,24:50"
//   set "NAME" NUMBER   a number is typed into the control of this name of the page in front
//   undo, redo          and what else a user does with a property page: host/pages/PageEvent.h
//   snap FILE           writes the current picture
//
// Positions are frame pixels from the lower left corner, y upwards. # starts a comment; empty lines are ignored.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "host/pages/PageEvent.h"
#include "host/properties/PropertyStore.h"
#include "host/viewer/ViewGeometry.h"

namespace vblur::host {

struct PenEvent {
  enum class Kind { Move, Down, Up, Time, Set, Snap, Page };

  Kind kind = Kind::Move;
  std::string place;        // "FILE:LINE", for messages
  FramePoint point;         // Move, Down, Up
  std::int32_t button = 0;  // likewise; 0 for a move with no button down
  double time = 0.0;
  GUID property;
  PropertyStore::Setting setting;
  std::filesystem::path file;  // relative to the script's folder
  PageEvent page;
};

// Reads a script. Throws Failure: cannot read for a file that is missing, unreadable or larger than 16 MiB; wrong
// usage, as "FILE:LINE: expected ...", for a malformed line, an up without a down, a second down, a pen that is down at
// the end, and a picture that is written twice or in an unknown format.
std::vector<PenEvent> ReadPenScript(const std::filesystem::path& path);

// The same from text. `name` is the file name in messages, `folder` where pictures go.
std::vector<PenEvent> ParsePenScript(std::string_view text, const std::string& name,
                                     const std::filesystem::path& folder);

}  // namespace vblur::host
