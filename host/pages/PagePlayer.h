// Carries out what a user does with the page in front: the events of a page script.
#pragma once

#include <functional>
#include <string>

#include "host/pages/EffectPages.h"
#include "host/pages/PageEvent.h"
#include "host/pages/UndoHistory.h"

namespace vblur::host {

class PagePlayer {
 public:
  struct Actions {
    // Changes the time of pages and viewer.
    std::function<void(double time)> setTime;
    // Prints the page in front.
    std::function<void()> print;
  };

  // Pages and history are borrowed.
  PagePlayer(EffectPages& pages, UndoHistory& history, Actions actions)
      : pages_(pages), history_(history), actions_(std::move(actions)) {}

  // Throws Failure (wrong usage) with the event's place for a control that the page lacks or that takes no input, a
  // text that it does not take, a page that the effect does not list, and nothing to undo or redo.
  void Play(const PageEvent& event);

 private:
  template <class Control>
  Control& Require(const PageEvent& event, const char* what);
  void PlayOnControl(const PageEvent& event);
  void Show(const PageEvent& event);
  void UndoOrRedo(const PageEvent& event);
  void Scrub(const PageEvent& event);
  void Choose(const PageEvent& event);
  void Tick(const PageEvent& event, bool on);
  void Pick(const PageEvent& event);

  EffectPages& pages_;
  UndoHistory& history_;
  Actions actions_;
};

}  // namespace vblur::host
