#include "tests/fuzz/PageLine.h"

#include "host/properties/PropertyText.h"

namespace vblur::test {

namespace {

using PageKind = host::PageEvent::Kind;

std::string ScrubOf(const host::PageEvent& event) {
  std::string line;
  if (event.step == host::NumberStep::Fine) line += " fine";
  if (event.step == host::NumberStep::Coarse) line += " coarse";
  for (const std::int32_t steps : event.steps)
    line += " " + std::to_string(steps);
  return line;
}

}  // namespace

std::string PageLineOf(const host::PageEvent& event) {
  const std::string name = " \"" + event.name + "\"";
  const std::string nameAndText = name + " \"" + event.text + "\"";
  switch (event.kind) {
    case PageKind::Show: return "show" + name;
    case PageKind::Set: return "set" + nameAndText;
    case PageKind::Scrub: return "scrub" + name + ScrubOf(event);
    case PageKind::Choose: return "choose" + nameAndText;
    case PageKind::Tick: return "tick" + name;
    case PageKind::Untick: return "untick" + name;
    case PageKind::Pick:
      return "pick " + std::to_string(event.colour[0]) + "," + std::to_string(event.colour[1]) + "," +
             std::to_string(event.colour[2]);
    case PageKind::Press: return "press" + name;
    case PageKind::Time: return "time " + host::FormatNumber(event.time);
    case PageKind::Undo: return "undo";
    case PageKind::Redo: return "redo";
    case PageKind::Print: break;
  }
  return "print";
}

bool IsSamePageEvent(const host::PageEvent& a, const host::PageEvent& b) {
  return a.kind == b.kind && a.name == b.name && a.text == b.text && a.step == b.step && a.steps == b.steps &&
         a.colour == b.colour && a.time == b.time;
}

}  // namespace vblur::test
