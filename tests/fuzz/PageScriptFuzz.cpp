#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "host/pages/PageSession.h"
#include "properties/ClassIds.h"
#include "properties/PropertyTable.h"
#include "tests/fuzz/FileChecks.h"
#include "tests/fuzz/FileFuzz.h"
#include "tests/fuzz/LinkedServer.h"
#include "tests/fuzz/PageLine.h"

namespace vblur::test {

namespace {

using host::PageEvent;

ComPtr<IDSImageEffect> MakeLinkedEffect() {
  ComPtr<IDSImageEffect> effect;
  CoCreateInstance(classes::kBlur, nullptr, CLSCTX_INPROC_SERVER, IDSImageEffect::kIid, effect.Receive());
  return effect;
}

// One number has keys.
host::Job JobOf(host::EffectKind kind) {
  host::Job job;
  job.kind = kind;
  job.project = host::ProjectSizes{{1920.0, 1080.0}, {1920.0, 1080.0}};
  job.properties.Set(PropertyOf(PropertyId::Aspect).guid, host::Curve{{{0.0, 50.0}, {24.0, 100.0}}});
  return job;
}

// Whatever was played can be taken back, and done again, as long as no step is open.
void CheckHistory(host::PageSession& session, const host::PropertyStore& before) {
  host::UndoHistory& history = session.History();
  const std::size_t redos = history.RedoDepth();
  const host::PropertyStore after = session.Properties();
  const std::size_t depth = history.UndoDepth();
  for (std::size_t i = 0; i < depth; ++i)
    Demand(history.Undo(), "a step cannot be taken back: " + history.UndoName());
  Demand(!history.CanUndo() && history.RedoDepth() == depth + redos, "steps are lost or left by taking them back");
  Demand(session.Properties() == before, "the properties are others after all steps were taken back");
  for (std::size_t i = 0; i < depth; ++i)
    Demand(history.Redo(), "a step cannot be done again: " + history.RedoName());
  Demand(session.Properties() == after, "the properties are others after all steps were done again");
}

// Whether the effect takes all of the script in this use.
bool PlaysAs(host::EffectKind kind, const std::vector<PageEvent>& events) {
  host::PageSession session(JobOf(kind), 0.0, &MakeLinkedEffect, nullptr);
  const host::PropertyStore before = session.Properties();
  std::size_t printed = 0;
  session.OnPrint([&] { printed += session.Form(true).size(); });
  const bool isPlayed = Accepts([&] {
    for (const PageEvent& event : events)
      session.Play(event);
  });
  session.Form(true);
  CheckHistory(session, before);
  return isPlayed;
}

}  // namespace

bool CheckPageScript(std::string_view bytes) {
  static const LinkedServer server;
  const std::string name = "session.pages";
  std::vector<PageEvent> events;
  if (!Accepts([&] { events = host::ParsePageScript(bytes, name); })) return false;
  CheckPlaces(events, name);
  std::string text;
  for (const PageEvent& event : events)
    text += PageLineOf(event) + "\n";
  const std::vector<PageEvent> again = host::ParsePageScript(text, name);
  Demand(std::ranges::equal(events, again, IsSamePageEvent),
         "a script has other events when it is written again:\n" + text);

  bool isAccepted = false;
  for (const auto kind : {host::EffectKind::Filter, host::EffectKind::Transition, host::EffectKind::Paint})
    isAccepted = PlaysAs(kind, events) || isAccepted;
  Demand(LinkedServer::LiveObjects() == 0, "the effect or a page is left after the script:\n" + text);
  return isAccepted;
}

}  // namespace vblur::test
