// Undo once more, slow and obvious: every step keeps whole copies of all properties before and after it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/host/pages/HeldProperties.h"

namespace vblur::host {

class HistoryModel {
 public:
  // A listener of the effect: when `watched` is written, it puts a plain value of `answered`.
  struct Follower {
    std::size_t watched = 0;
    std::size_t answered = 0;
    std::uint64_t (*answer)(const HeldProperty& watched) = nullptr;
    bool comesFirst = false;  // before the history
    bool makesStep = false;   // named "Follow"
  };

  HistoryModel(HeldProperties start, std::optional<Follower> follower)
      : now_(std::move(start)), follower_(follower), atOpen_(now_) {}

  const HeldProperties& Now() const { return now_; }
  std::size_t UndoDepth() const { return past_.size(); }
  std::size_t RedoDepth() const { return future_.size(); }
  bool CanUndo() const { return depth_ == 0 && !past_.empty(); }
  bool CanRedo() const { return depth_ == 0 && !future_.empty(); }
  std::string UndoName() const { return past_.empty() ? "" : past_.back().name; }
  std::string RedoName() const { return future_.empty() ? "" : future_.back().name; }

  void Begin(const std::string& name) {
    if (depth_++ == 0) name_ = name;
  }
  void End() {
    if (depth_ > 0 && --depth_ == 0) Close();
  }

  // The effect has these properties now, by one call that notifies of `written`, or of all.
  void Change(const HeldProperties& properties, std::optional<std::size_t> written) {
    const bool follows = follower_ && written.value_or(follower_->watched) == follower_->watched;
    HeldProperties next = properties;
    const bool isOneChange = follows && follower_->comesFirst && !follower_->makesStep;
    if (isOneChange) Answer(next);
    Take(next);
    if (!follows || isOneChange) return;
    if (follower_->makesStep) Begin("Follow");
    Answer(next);
    Take(next);
    if (follower_->makesStep) End();
  }

  // Whether it is done.
  bool Undo() { return Move(past_, future_, true); }
  bool Redo() { return Move(future_, past_, false); }

 private:
  struct Step {
    HeldProperties before;
    HeldProperties after;
    std::string name;
    std::vector<std::size_t> order;  // of first changes
  };

  void Answer(HeldProperties& properties) const {
    properties[follower_->answered].plain = follower_->answer(properties[follower_->watched]);
  }

  void Take(const HeldProperties& next) {
    for (std::size_t i = 0; i < next.size(); ++i) {
      if (next[i] != now_[i] && std::ranges::find(order_, i) == order_.end()) order_.push_back(i);
    }
    now_ = next;
    if (depth_ == 0) Close();
  }

  void Close() {
    std::erase_if(order_, [&](std::size_t i) { return now_[i] == atOpen_[i]; });
    if (now_ != atOpen_) {
      const std::string name = name_.empty() ? std::string(kProperties[order_.front()].name) : name_;
      past_.push_back({atOpen_, now_, name, order_});
      future_.clear();
    }
    atOpen_ = now_;
    name_.clear();
    order_.clear();
  }

  bool Move(std::vector<Step>& from, std::vector<Step>& to, bool isBack) {
    if (depth_ != 0 || from.empty()) return false;
    const Step step = from.back();
    from.pop_back();
    const HeldProperties& target = isBack ? step.before : step.after;
    std::vector<std::size_t> order = step.order;
    if (isBack) std::ranges::reverse(order);
    HeldProperties held = now_;
    for (const std::size_t i : order) {
      if (held[i] == target[i]) continue;
      held[i] = target[i];
      if (!follower_ || i != follower_->watched) continue;
      Answer(held);
      if (follower_->makesStep) name_ = "Follow";
    }
    to.push_back(step);
    now_ = atOpen_ = target;
    Take(held);
    return true;
  }

  HeldProperties now_;
  std::optional<Follower> follower_;
  HeldProperties atOpen_;
  std::vector<Step> past_;
  std::vector<Step> future_;
  int depth_ = 0;
  std::string name_;
  std::vector<std::size_t> order_;
};

}  // namespace vblur::host
