// What trials have found, each made once. A trial that throws leaves no answer and is made again the next time.
#pragma once

#include <map>
#include <mutex>

namespace vblur::host {

// From any thread.
template <typename Question, typename Answer>
class TrialAnswers {
 public:
  // Throws what the trial throws.
  template <typename Trial>
  const Answer& Of(const Question& question, const Trial& trial) {
    const std::scoped_lock lock(mutex_);
    const auto found = answers_.find(question);
    return found != answers_.end() ? found->second : answers_.emplace(question, trial()).first->second;
  }

 private:
  std::mutex mutex_;
  std::map<Question, Answer> answers_;
};

}  // namespace vblur::host
