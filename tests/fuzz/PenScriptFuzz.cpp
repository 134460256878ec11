#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "host/files/OutputFormat.h"
#include "host/properties/PropertyText.h"
#include "host/viewer/PenScript.h"
#include "tests/fuzz/FileChecks.h"
#include "tests/fuzz/FileFuzz.h"
#include "tests/fuzz/PageLine.h"

namespace vblur::test {

namespace {

using host::FormatNumber;
using host::PenEvent;
using Kind = PenEvent::Kind;

// The line of a script that makes the event.
std::string LineOf(const PenEvent& event) {
  const std::string point = FormatNumber(event.point.x) + " " + FormatNumber(event.point.y);
  switch (event.kind) {
    case Kind::Move: return "move " + point;
    case Kind::Down: return "down " + point + " " + std::to_string(event.button);
    case Kind::Up: return "up " + point;
    case Kind::Time: return "time " + FormatNumber(event.time);
    case Kind::Set: {
      const Property& property = *host::FindProperty(event.property);
      return "set " + std::string(property.name) + " " + host::FormatSetting(property, event.setting);
    }
    case Kind::Page: return PageLineOf(event.page);
    case Kind::Snap: break;
  }
  // A name may begin with a space.
  return (event.file.is_absolute() ? "snap " : "snap ./") + event.file.string();
}

bool IsSameEvent(const PenEvent& a, const PenEvent& b) {
  return a.kind == b.kind && a.point.x == b.point.x && a.point.y == b.point.y && a.button == b.button &&
         a.time == b.time && a.property == b.property && a.setting == b.setting && a.file == b.file &&
         IsSamePageEvent(a.page, b.page);
}

// A button goes down and up, never another one in between.
void CheckButtons(const std::vector<PenEvent>& events) {
  std::int32_t down = 0;
  for (const PenEvent& event : events) {
    Demand(std::isfinite(event.point.x) && std::isfinite(event.point.y) && std::isfinite(event.time),
           event.place + ": a number that is not finite");
    if (event.kind == Kind::Down) {
      Demand(down == 0 && event.button >= 1 && event.button <= 3, event.place + ": a second button, or none");
      down = event.button;
    }
    if (event.kind > Kind::Up) continue;
    Demand(event.button == down, event.place + ": another button than the one that is down");
    if (event.kind == Kind::Up) down = 0;
  }
  Demand(down == 0, "the pen is down at the end");
}

}  // namespace

bool CheckPenScript(std::string_view bytes) {
  const std::string name = "drag.pen";
  std::vector<PenEvent> events;
  if (!Accepts([&] { events = host::ParsePenScript(bytes, name, "shots"); })) return false;
  CheckButtons(events);
  CheckPlaces(events, name);
  std::string text;
  for (const PenEvent& event : events) {
    if (event.kind == Kind::Snap) host::OutputFormatOf(event.file.c_str());
    text += LineOf(event) + "\n";
  }
  // The names start from the folder already.
  const std::vector<PenEvent> again = host::ParsePenScript(text, name, "");
  Demand(std::ranges::equal(events, again, IsSameEvent),
         "a script has other events when it is written again:\n" + text);
  return true;
}

}  // namespace vblur::test
