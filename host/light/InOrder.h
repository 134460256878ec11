// Parts of a file that are made on several threads, and put into it one behind the other.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <future>
#include <utility>

namespace vblur::host {

// One thread at a time. Destroying it waits for what is being made.
template <class Part>
class InOrder {
 public:
  // `threads` make parts, with 1 the calling one; the system may allow fewer. `put` is called by the calling thread
  // alone, and ends the work by an exception.
  InOrder(std::int32_t threads, std::function<void(Part)> put)
      : put_(std::move(put)), most_(static_cast<std::size_t>(std::max(threads, 1))) {}

  // `make` is copied: a start that fails takes with it what is moved. Throws what `make` and `put` throw.
  template <class Make>
  void Add(const Make& make) {
    if (underway_.size() == most_) PutFirst();
    // Where the system allows no thread, the calling one does the work when it takes the result.
    const auto policy = most_ > 1 ? std::launch::async | std::launch::deferred : std::launch::deferred;
    underway_.push_back(std::async(policy, make));
  }
  void Finish() {
    while (!underway_.empty())
      PutFirst();
  }

 private:
  void PutFirst() {
    Part part = underway_.front().get();
    underway_.pop_front();
    put_(std::move(part));
  }

  std::function<void(Part)> put_;
  std::size_t most_;
  std::deque<std::future<Part>> underway_;
};

}  // namespace vblur::host
