// What a user does with a property page, as a line of a script:
//
//   show PAGE                   a page comes to the front
//   set CONTROL NUMBER          a number is typed, as TypedNumber.h reads it: 24, 50%, += 5
//   scrub CONTROL [fine|coarse] STEPS...   a number is dragged by steps of 1, 0.1 or 10, and released
//   choose LIST ENTRY           a list's entry is selected
//   tick BOX, untick BOX        a check box
//   pick R,G,B                  a colour is taken for the colour chip, from 0 to 255
//   press BUTTON                a push button
//   time T                      the time changes
//   undo, redo
//   print                       the page is printed
//
// Names with spaces may be put in double quotes. # starts a comment; empty lines are ignored.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/pages/NumberControl.h"

namespace vblur::host {

struct PageEvent {
  enum class Kind { Show, Set, Scrub, Choose, Tick, Untick, Pick, Press, Time, Undo, Redo, Print };

  Kind kind = Kind::Print;
  std::string place;  // "FILE:LINE", for messages
  std::string name;   // of the control or page
  std::string text;   // Set, Choose
  NumberStep step = NumberStep::Normal;
  std::vector<std::int32_t> steps;
  std::array<std::int32_t, 3> colour{};
  double time = 0.0;
};

// Whether a line begins with the verb of such an event.
bool IsPageEvent(std::string_view line);
// Reads a line. Throws Failure (wrong usage), as "PLACE: expected ...".
PageEvent ReadPageEvent(std::string_view line, const std::string& place);

// Reads a script. Throws Failure: cannot read for a file that is missing, unreadable or larger than 16 MiB; wrong usage
// for a malformed line.
std::vector<PageEvent> ReadPageScript(const std::filesystem::path& path);
std::vector<PageEvent> ParsePageScript(std::string_view text, const std::string& name);

}  // namespace vblur::host
