// An effect of this build's server with its property pages, and a user who operates them.
#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "host/base/Failure.h"
#include "host/base/Utf8.h"
#include "host/pages/ButtonControl.h"
#include "host/pages/CheckBoxControl.h"
#include "host/pages/ColourChipControl.h"
#include "host/pages/ListControl.h"
#include "host/pages/PageEvent.h"
#include "host/pages/PageSession.h"
#include "host/properties/PropertyText.h"
#include "tests/host/pages/HeldProperties.h"
#include "tests/support/TestServer.h"

namespace vblur::host {

// The control of this name; a failed test without one.
template <class Control>
Control& ControlOf(const OpenedPage& page, std::string_view name) {
  const auto& items = page.dialog->Items();
  const auto found = std::ranges::find_if(items, [&](const auto& item) {
    return dynamic_cast<const Control*>(item.get()) != nullptr &&
           (page.NameOf(*item) == name || Utf8Of(item->Text()) == name);
  });
  if (found == items.end()) throw Failure(ExitCode::SomeFramesFailed, "no control " + std::string(name));
  return dynamic_cast<Control&>(**found);
}

inline ColourChipControl& ChipOf(const OpenedPage& page) {
  return dynamic_cast<ColourChipControl&>(**std::ranges::find_if(
      page.dialog->Items(), [](const auto& item) { return item->Kind() == PageWindowKind::ColourChip; }));
}

struct PagedEffect {
  explicit PagedEffect(const Job& job = {}, double time = 0.0, CallTrace* trace = nullptr)
      : session(
            job, time,
            [this] {
              auto made = MakeEffect();
              effect = made.As<IDSProperties>();
              return made;
            },
            trace) {}

  explicit PagedEffect(EffectKind kind) : PagedEffect(JobOf(kind)) {}

  static Job JobOf(EffectKind kind) {
    Job job;
    job.kind = kind;
    return job;
  }

  void Do(const std::string& script) {
    for (const PageEvent& event : ParsePageScript(script, "story.page"))
      session.Play(event);
  }

  OpenedPage& Page(std::string_view name) { return *session.Pages().Find(name); }
  OpenedPage& Front() { return *session.Pages().Front(); }
  UndoHistory& History() { return session.History(); }

  double Number(std::string_view name) { return ControlOf<NumberControl>(Front(), name).Value(); }
  std::string Entry(std::string_view name) { return Utf8Of(ControlOf<ListControl>(Front(), name).Text()); }
  bool IsTicked(std::string_view name) { return ControlOf<CheckBoxControl>(Front(), name).IsChecked(); }
  std::array<std::int32_t, 4> Chip() { return ChipOf(Front()).Colour(); }

  // As another part of a program does.
  void Put(std::string_view name, double value) const {
    const Property& property = PropertyNamed(name);
    EXPECT_EQ(effect->PutValue(property.guid, property.control == PropertyControl::Number
                                                  ? DSVariant::Of(value)
                                                  : DSVariant::Of(static_cast<std::int32_t>(value))),
              kOk);
  }
  double ValueAt(std::string_view name, double time = 0.0) const {
    return session.Properties().ValueAt(PropertyNamed(name).guid, time);
  }
  HeldProperties Held() const { return HeldBy(*effect); }

  ComPtr<IDSProperties> effect;
  PageSession session;
};

}  // namespace vblur::host
