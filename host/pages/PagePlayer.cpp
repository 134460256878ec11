#include "host/pages/PagePlayer.h"

#include <algorithm>
#include <vector>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"
#include "host/base/Utf8.h"
#include "host/pages/ButtonControl.h"
#include "host/pages/CheckBoxControl.h"
#include "host/pages/ColourChipControl.h"
#include "host/pages/ListControl.h"
#include "host/properties/PropertyText.h"

namespace vblur::host {

namespace {

const char* KindInWords(PageWindowKind kind) {
  switch (kind) {
    case PageWindowKind::Button: return "a button";
    case PageWindowKind::CheckBox: return "a check box";
    case PageWindowKind::List: return "a list";
    case PageWindowKind::Number: return "a number";
    case PageWindowKind::ColourChip: return "the colour chip";
    default: return "a text";
  }
}

bool IsControl(const PageWindow& window) {
  switch (window.Kind()) {
    case PageWindowKind::Button:
    case PageWindowKind::CheckBox:
    case PageWindowKind::List:
    case PageWindowKind::Number: return true;
    default: return false;
  }
}

// Whether a user means this control: by the name of its property or option, or by the text of a box or button. The
// text of a list or number is what it shows.
bool IsMeant(const OpenedPage& page, const PageWindow& item, std::string_view name) {
  const Property* const property = page.PropertyOf(item);
  if (property != nullptr && property == FindPropertyWritten(name)) return true;
  const bool hasTitle = item.Kind() == PageWindowKind::CheckBox || item.Kind() == PageWindowKind::Button;
  return hasTitle && EqualIgnoringCase(Utf8Of(item.Text()), name);
}

std::string ExpectedControl(const OpenedPage& page, std::string_view found) {
  std::vector<std::string> names;
  std::string list;
  for (const auto& item : page.dialog->Items()) {
    if (!IsControl(*item)) continue;
    names.push_back(page.NameOf(*item));
    list += (list.empty() ? "" : ", ") + names.back();
  }
  const std::vector<std::string_view> views(names.begin(), names.end());
  const std::string_view nearest = NearestName(found, views);
  if (nearest.empty()) return "expected one of the controls " + list + ", found " + Quoted(found);
  return "expected a control of the page " + page.name + ", found " + Quoted(found) + "; did you mean " +
         Quoted(nearest) + "?";
}

}  // namespace

template <class Control>
Control& PagePlayer::Require(const PageEvent& event, const char* what) {
  const OpenedPage& page = *pages_.Front();
  const auto& items = page.dialog->Items();
  const auto found = std::ranges::find_if(
      items, [&](const auto& item) { return IsControl(*item) && IsMeant(page, *item, event.name); });
  if (found == items.end()) Refuse(event.place, ExpectedControl(page, event.name));
  const std::string name = page.NameOf(**found);
  auto* const control = dynamic_cast<Control*>(found->get());
  if (control == nullptr) {
    Refuse(event.place, std::string("expected ") + what + ", " + Quoted(name) + " is " + KindInWords((*found)->Kind()));
  }
  if (!control->TakesInput()) Refuse(event.place, Quoted(name) + " takes no input, expected a control that is enabled");
  return *control;
}

void PagePlayer::Play(const PageEvent& event) {
  switch (event.kind) {
    case PageEvent::Kind::Show: Show(event); break;
    case PageEvent::Kind::Time: actions_.setTime(event.time); break;
    case PageEvent::Kind::Print: actions_.print(); break;
    case PageEvent::Kind::Undo:
    case PageEvent::Kind::Redo: UndoOrRedo(event); break;
    default:
      if (pages_.Front() == nullptr) Refuse(event.place, "expected \"show PAGE\" first, no page is open");
      PlayOnControl(event);
      break;
  }
}

void PagePlayer::UndoOrRedo(const PageEvent& event) {
  const bool undoes = event.kind == PageEvent::Kind::Undo;
  const std::string name = undoes ? history_.UndoName() : history_.RedoName();
  const bool hasStep = undoes ? history_.CanUndo() : history_.CanRedo();
  const HRESULT done = NotedCall(
      pages_.Trace(), "history", [&] { return (undoes ? "Undo(" : "Redo(") + name + ")"; },
      [&] { return (undoes ? history_.Undo() : history_.Redo()) ? kOk : kFalse; });
  if (done == kOk) return;
  const std::string what = undoes ? "undo" : "redo";
  if (hasStep) Refuse(event.place, "the effect refuses to " + what + " " + Quoted(name));
  if (history_.IsStepOpen()) Refuse(event.place, "expected the pen to be up before " + what);
  Refuse(event.place, "expected a step to " + what + ", there is none");
}

void PagePlayer::PlayOnControl(const PageEvent& event) {
  switch (event.kind) {
    case PageEvent::Kind::Set:
      if (const auto problem = Require<NumberControl>(event, "a number").Type(event.text); problem) {
        Refuse(event.place, *problem);
      }
      break;
    case PageEvent::Kind::Scrub: Scrub(event); break;
    case PageEvent::Kind::Choose: Choose(event); break;
    case PageEvent::Kind::Tick: Tick(event, true); break;
    case PageEvent::Kind::Untick: Tick(event, false); break;
    case PageEvent::Kind::Pick: Pick(event); break;
    case PageEvent::Kind::Press: Require<ButtonControl>(event, "a button").Press(); break;
    default: break;
  }
}

void PagePlayer::Show(const PageEvent& event) {
  pages_.RequireListed(event.name, event.place);
  pages_.Show(event.name);
}

void PagePlayer::Scrub(const PageEvent& event) {
  auto& number = Require<NumberControl>(event, "a number");
  // A listener may close the page.
  const auto dialog = pages_.Front()->dialog;
  number.BeginScrub();
  for (const std::int32_t steps : event.steps)
    number.Scrub(steps, event.step);
  number.EndScrub();
}

void PagePlayer::Choose(const PageEvent& event) {
  auto& list = Require<ListControl>(event, "a list");
  const Property* const property = pages_.Front()->PropertyOf(list);
  if (property == nullptr) Refuse(event.place, Quoted(event.name) + " has no property whose entries are known");
  try {
    list.Choose(static_cast<std::int32_t>(ParseValue(*property, event.text)));
  } catch (const Failure& failure) {
    Refuse(event.place, failure.what());
  }
}

void PagePlayer::Tick(const PageEvent& event, bool on) {
  auto& box = Require<CheckBoxControl>(event, "a check box");
  if (box.IsChecked() != on) box.Toggle();
}

void PagePlayer::Pick(const PageEvent& event) {
  const auto& items = pages_.Front()->dialog->Items();
  const auto found =
      std::ranges::find_if(items, [](const auto& item) { return item->Kind() == PageWindowKind::ColourChip; });
  if (found == items.end())
    Refuse(event.place, "expected a page with a colour chip, " + pages_.Front()->name + " has none");
  dynamic_cast<ColourChipControl&>(**found).PickColour(event.colour[0], event.colour[1], event.colour[2]);
}

}  // namespace vblur::host
