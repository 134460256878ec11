// Undo and redo of an effect's properties. The history listens to the effect, so that it records every change, whoever
// makes it: pages, viewer tools, defaults.
#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "host/pages/PropertyState.h"
#include "platform/ComPtr.h"
#include "platform/IDSProperties.h"
#include "platform/PageSite.h"
#include "properties/PropertyTable.h"

namespace vblur::host {

// A step holds the properties of the table that differ from before it, to the bit, each from its first state to its
// last. A change outside of BeginStep and EndStep is a step of its own; what a listener writes in answer to it is
// another, but the same if the listener is called before the history and makes no step itself.
//
// An undo writes the properties back one by one, so that all listeners follow. What they write meanwhile is no part of
// it: where the effect differs at the end from what the undo leads to, that is a new step, named after the first step
// that a listener began, and the redos go. Redo does the same.
//
// The oldest steps are forgotten when all together hold more than kMostKeys keys of curves, or are more than
// kMostSteps; the last one stays.
//
// On the thread that changes the effect. Listeners must not destroy the history.
class UndoHistory final : public IDSUndo, private IDSPropertyNotify {
 public:
  static constexpr std::size_t kMostSteps = 100'000;
  static constexpr std::size_t kMostKeys = std::size_t{1} << 22;  // 64 MiB

  // Keeps a reference to the effect. Listeners that are added later are called after the history. Properties that the
  // effect lacks are not recorded.
  explicit UndoHistory(IDSProperties& effect);
  ~UndoHistory() override;
  UndoHistory(const UndoHistory&) = delete;
  UndoHistory& operator=(const UndoHistory&) = delete;

  void BeginStep(const char16_t* name) override;
  // Nothing without a step that is open.
  void EndStep() override;

  // False, without a change, while a step is open or an undo or redo is at work, and when there is none. False, too,
  // when the effect refuses a value: what was written is written back, and the step stays.
  bool Undo();
  bool Redo();

  // Whether a step is begun and not ended, or an undo or redo is at work.
  bool IsStepOpen() const { return depth_ != 0; }
  // Whether there is one and no step is open.
  bool CanUndo() const { return depth_ == 0 && !undo_.empty(); }
  bool CanRedo() const { return depth_ == 0 && !redo_.empty(); }
  // UTF-8: the step's name, or the table's name of the first property that it changed; empty without one.
  std::string UndoName() const { return undo_.empty() ? std::string() : undo_.back().name; }
  std::string RedoName() const { return redo_.empty() ? std::string() : redo_.back().name; }
  std::size_t UndoDepth() const { return undo_.size(); }
  std::size_t RedoDepth() const { return redo_.size(); }

 private:
  struct Change {
    std::size_t property;  // an index into kProperties
    PropertyState before;
    PropertyState after;
  };
  struct Step {
    std::string name;
    std::vector<Change> changes;  // in the order of their first change

    std::size_t CountKeys() const;
  };
  enum class Direction { Back, Forth };

  void OnPropertyChanged(const GUID& property, const DSVariant* value, std::uint32_t flags) override;

  bool Replay(std::deque<Step>& from, std::deque<Step>& to, Direction direction);
  // Goes on after a value that the effect refuses; false then.
  bool Write(const Step& step, Direction direction);
  // Records where the effect differs from `known_`: in the open step, or as a step.
  void Compare();
  void Record(std::size_t property, const PropertyState& state);
  // Ends the open step.
  void Close();

  ComPtr<IDSProperties> effect_;
  // The effect as recorded so far.
  std::array<PropertyState, kProperties.size()> known_;
  std::deque<Step> undo_;
  std::deque<Step> redo_;
  // Of the steps in both.
  std::size_t keys_ = 0;
  Step open_;
  // Steps begun and not ended; an undo or redo at work counts as one.
  int depth_ = 0;
  bool isReplaying_ = false;
};

}  // namespace vblur::host
