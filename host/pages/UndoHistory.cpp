#include "host/pages/UndoHistory.h"

#include <algorithm>
#include <utility>

#include "host/base/Utf8.h"

namespace vblur::host {

UndoHistory::UndoHistory(IDSProperties& effect) : effect_(&effect) {
  for (std::size_t i = 0; i < kProperties.size(); ++i)
    known_[i] = PropertyState::Read(*effect_, kProperties[i].guid).value_or(PropertyState{});
  effect_->Advise(this);
}

UndoHistory::~UndoHistory() {
  effect_->Unadvise(this);
}

void UndoHistory::BeginStep(const char16_t* name) {
  // A change that is notified only after this, since a listener that comes first began the step, is none of its own.
  if (!isReplaying_) Compare();
  const int outermost = isReplaying_ ? 1 : 0;
  if (depth_ == outermost && open_.name.empty() && name != nullptr) open_.name = Utf8Of(name);
  ++depth_;
}

void UndoHistory::EndStep() {
  if (depth_ == (isReplaying_ ? 1 : 0)) return;
  if (!isReplaying_) Compare();
  if (--depth_ == 0) Close();
}

bool UndoHistory::Undo() {
  return Replay(undo_, redo_, Direction::Back);
}

bool UndoHistory::Redo() {
  return Replay(redo_, undo_, Direction::Forth);
}

void UndoHistory::OnPropertyChanged(const GUID&, const DSVariant*, std::uint32_t) {
  // Not the property alone: listeners that come first may have changed others, and their notices came before this one.
  if (!isReplaying_) Compare();
}

bool UndoHistory::Replay(std::deque<Step>& from, std::deque<Step>& to, Direction direction) {
  if (depth_ != 0) return false;
  // A listener that comes before the history may undo the change of which it was told.
  Compare();
  if (from.empty()) return false;
  Step step = std::move(from.back());
  from.pop_back();

  depth_ = 1;
  isReplaying_ = true;
  const Direction opposite = direction == Direction::Back ? Direction::Forth : Direction::Back;
  const bool isDone = Write(step, direction);
  if (!isDone) Write(step, opposite);
  isReplaying_ = false;

  const bool isBack = (isDone ? direction : opposite) == Direction::Back;
  for (const Change& change : step.changes)
    known_[change.property] = isBack ? change.before : change.after;
  (isDone ? to : from).push_back(std::move(step));
  // What listeners wrote.
  EndStep();
  return isDone;
}

bool UndoHistory::Write(const Step& step, Direction direction) {
  bool isWhole = true;
  const auto write = [&](const Change& change, const PropertyState& state) {
    isWhole &= state.Write(*effect_, kProperties[change.property].guid);
  };
  if (direction == Direction::Forth) {
    for (const Change& change : step.changes)
      write(change, change.after);
  } else {
    for (auto change = step.changes.rbegin(); change != step.changes.rend(); ++change)
      write(*change, change->before);
  }
  return isWhole;
}

void UndoHistory::Compare() {
  for (std::size_t i = 0; i < kProperties.size(); ++i) {
    const auto held = PropertyState::Read(*effect_, kProperties[i].guid);
    if (held && *held != known_[i]) Record(i, *held);
  }
  if (depth_ == 0) Close();
}

void UndoHistory::Record(std::size_t property, const PropertyState& state) {
  const auto known = std::ranges::find(open_.changes, property, &Change::property);
  if (known == open_.changes.end()) {
    open_.changes.push_back({property, known_[property], state});
  } else {
    known->after = state;
  }
  known_[property] = state;
}

void UndoHistory::Close() {
  Step step = std::exchange(open_, {});
  std::erase_if(step.changes, [](const Change& change) { return change.before == change.after; });
  if (step.changes.empty()) return;
  if (step.name.empty()) step.name = kProperties[step.changes.front().property].name;
  for (const Step& undone : redo_)
    keys_ -= undone.CountKeys();
  redo_.clear();
  keys_ += step.CountKeys();
  undo_.push_back(std::move(step));
  while (undo_.size() > 1 && (keys_ > kMostKeys || undo_.size() > kMostSteps)) {
    keys_ -= undo_.front().CountKeys();
    undo_.pop_front();
  }
}

std::size_t UndoHistory::Step::CountKeys() const {
  const auto count = [](const PropertyState& state) { return state.curve ? state.curve->keys.size() : 0; };
  std::size_t keys = 0;
  for (const Change& change : changes)
    keys += count(change.before) + count(change.after);
  return keys;
}

}  // namespace vblur::host
