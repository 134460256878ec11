#include "host/sequence/FramePipeline.h"

#include <atomic>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace vblur::host {

namespace {

// Admits items in order, as lanes become free.
class Gate {
 public:
  explicit Gate(std::size_t lanes) {
    for (std::size_t lane = lanes; lane > 0; --lane)
      free_.push_back(lane - 1);
  }

  // Waits for the item's turn; returns its lane.
  std::size_t Enter(std::int64_t item) {
    std::unique_lock hold(lock_);
    changed_.wait(hold, [&] { return next_ == item && !free_.empty(); });
    const std::size_t lane = free_.back();
    free_.pop_back();
    ++next_;
    changed_.notify_all();
    return lane;
  }

  void Leave(std::size_t lane) {
    {
      const std::lock_guard hold(lock_);
      free_.push_back(lane);
    }
    changed_.notify_all();
  }

 private:
  std::mutex lock_;
  std::condition_variable changed_;
  std::vector<std::size_t> free_;
  std::int64_t next_ = 0;
};

class Pipeline {
 public:
  Pipeline(std::size_t lanes, std::int64_t items, const FrameStages& stages)
      : stages_(stages), items_(items), renders_(lanes) {}

  void Run(std::size_t slots) {
    std::vector<std::thread> threads;
    threads.reserve(slots);
    try {
      for (std::size_t slot = 0; slot < slots; ++slot)
        threads.emplace_back([this, slot] { CarryItems(slot); });
    } catch (const std::exception&) {
      // The system has no more threads or no memory for one: the existing ones carry all items.
    }
    if (threads.empty()) CarryItems(0);
    for (std::thread& thread : threads)
      thread.join();
    if (error_) std::rethrow_exception(error_);
  }

 private:
  // A started item passes every gate, even when its stages are skipped: later items wait for it there.
  void CarryItems(std::size_t slot) {
    while (const auto item = BeginItem()) {
      Guarded([&] { stages_.read(slot, *item); });
      const std::size_t lane = renders_.Enter(*item);
      Guarded([&] { stages_.render(lane, slot, *item); });
      renders_.Leave(lane);
      Guarded([&] { stages_.write(slot, *item); });
      const std::size_t only = reports_.Enter(*item);
      Guarded([&] { stages_.report(slot, *item); });
      reports_.Leave(only);
    }
  }

  std::optional<std::int64_t> BeginItem() {
    const std::lock_guard hold(beginning_);
    if (broken_ || begun_ == items_) return std::nullopt;
    bool goesOn = false;
    Guarded([&] { goesOn = stages_.goesOn(); });
    if (!goesOn) return std::nullopt;
    return begun_++;
  }

  template <typename Action>
  void Guarded(Action action) {
    if (broken_) return;
    try {
      action();
    } catch (...) {
      const std::lock_guard hold(errorLock_);
      if (!error_) error_ = std::current_exception();
      broken_ = true;
    }
  }

  const FrameStages& stages_;
  const std::int64_t items_;
  std::mutex beginning_;
  std::int64_t begun_ = 0;
  Gate renders_;
  Gate reports_{1};
  std::atomic<bool> broken_ = false;
  std::mutex errorLock_;
  std::exception_ptr error_;
};

}  // namespace

void RunFramePipeline(std::size_t lanes, std::size_t slots, std::int64_t items, const FrameStages& stages) {
  Pipeline(lanes, items, stages).Run(slots);
}

}  // namespace vblur::host
