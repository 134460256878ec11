// A job's effect with its property pages and its history, without pictures: what a script or a window operates.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "host/hosted/CoordMan.h"
#include "host/hosted/EffectHost.h"
#include "host/hosted/EffectServer.h"
#include "host/hosted/ExecuteContext.h"
#include "host/hosted/HostedEffect.h"
#include "host/pages/EffectPages.h"
#include "host/pages/PagePlayer.h"
#include "host/pages/UndoHistory.h"
#include "sdk/effects/Content.h"

namespace vblur::host {

class PageSession {
 public:
  // The trace is borrowed and may be null. Throws Failure (wrong usage) when the effect refuses a property of the job.
  PageSession(const Job& job, double time, const EffectFactory& makeEffect, CallTrace* trace);
  PageSession(const PageSession&) = delete;
  PageSession& operator=(const PageSession&) = delete;

  // Throws as PagePlayer does.
  void Play(const PageEvent& event) { player_.Play(event); }
  // Called when a script prints the page in front.
  void OnPrint(std::function<void()> print) { print_ = std::move(print); }
  // The page in front as text; empty without one.
  std::string Form(bool toolTips);

  EffectPages& Pages() { return pages_; }
  UndoHistory& History() { return history_; }
  PropertyStore Properties() const { return effect_.Properties(); }

 private:
  // The job's properties are no change.
  IDSProperties& SetUp(const Job& job);

  // Each needs those above it. Effects read the project when they are created.
  EffectHost effectHost_;
  OpenContent content_{effectHost_};
  CoordMan coordMan_;
  ExecuteContext context_;
  HostedEffect effect_;
  UndoHistory history_;
  EffectPages pages_;
  std::function<void()> print_;
  PagePlayer player_;
};

}  // namespace vblur::host
