// The part of the overlay's fuzzer that shows property pages: programs that open an effect's pages over a history and
// operate them, listeners and observers that act within what they are told, and pages that are called in any order.
// Where a call is not allowed it is not made: nobody destroys a history or an effect's pages' dialog from within a call
// of theirs.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "effect/Blur.h"
#include "host/pages/EffectPages.h"
#include "host/pages/UndoHistory.h"
#include "host/viewer/Viewer.h"
#include "platform/ComPtr.h"
#include "tests/fuzz/RawPages.h"
#include "tests/support/Random.h"

namespace vblur::test {

class PageFuzz {
 public:
  // All borrowed; the elements may change, and be null, between the steps.
  PageFuzz(Random& random, std::span<const ComPtr<Blur>> effects, std::span<const ComPtr<host::Viewer>> viewers);
  // Ends everything, in random order.
  ~PageFuzz();
  PageFuzz(const PageFuzz&) = delete;
  PageFuzz& operator=(const PageFuzz&) = delete;

  // Does something, and returns its name.
  const char* Step();

 private:
  // Pages borrow the history.
  struct Program {
    std::unique_ptr<host::UndoHistory> history;
    std::unique_ptr<host::EffectPages> pages;
  };
  // From within which calls an action is allowed.
  enum class Within { Anything, Listeners, Nothing };
  struct Action;
  class Listener;
  class Observer;

  int Roll(int below) { return random_.within(0, below - 1); }
  bool Chance(int in) { return random_.oneIn(in); }
  double Number();
  std::string NumberText();
  template <class Range>
  auto& Some(Range& range) {
    return range[static_cast<std::size_t>(Roll(static_cast<int>(std::size(range))))];
  }
  Blur* SomeEffect() { return Some(effects_).get(); }
  // Null for none.
  host::EffectPages* SomePages() { return Some(programs_).pages.get(); }
  host::UndoHistory* SomeHistory();
  host::PageDialog* SomeDialog();
  host::PageWindow* SomeWindow();
  // A control of this class; null where the dialog has none.
  template <class Control>
  Control* SomeControl();

  void End(Program& program);
  void Release(std::unique_ptr<host::UndoHistory>& history);

  void StartProgram();
  void EndProgram();
  void ShowPage();
  void ClosePage();
  void ClosePages();
  void TypeNumber();
  void PressKey();
  void ScrubNumber();
  void ChooseEntry();
  void TickBox();
  void PickColour();
  void PressButton();
  void DisturbWindow();
  void SendToWindow(host::PageWindow& window);
  void ReadPage();
  void ChangeTime();
  void UndoOrRedo();
  void BeginOrEndStep();
  void KeepHistory();
  void UseUndo();
  void PutDefaults();
  void PutAnyValue();
  void PutKey();
  void MoveListener();
  void MoveObserver();
  void CallRawPage();

  Random& random_;
  std::span<const ComPtr<Blur>> effects_;
  std::span<const ComPtr<host::Viewer>> viewers_;
  int listening_ = 0;  // calls in progress
  int observing_ = 0;
  // They outlive what they watch.
  std::unique_ptr<Listener> listener_;
  std::unique_ptr<Observer> observer_;
  std::array<Program, 2> programs_;
  // Of nobody's pages.
  std::array<std::unique_ptr<host::UndoHistory>, 2> histories_;
  RawPages raw_;
};

}  // namespace vblur::test
