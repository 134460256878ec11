#include "host/FramePipeline.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>

namespace vblur::host {

namespace {

struct Passage {
  std::size_t slot = 0;
  std::int64_t item = 0;
};

// What one stage leaves for the next. It never holds more than there are slots.
class Belt {
 public:
  void Put(Passage passage) {
    {
      const std::lock_guard hold(lock_);
      waiting_.push_back(passage);
    }
    changed_.notify_one();
  }

  void Close() {
    {
      const std::lock_guard hold(lock_);
      closed_ = true;
    }
    changed_.notify_all();
  }

  // Waits; nothing when the belt is closed and empty.
  std::optional<Passage> Take() {
    std::unique_lock hold(lock_);
    changed_.wait(hold, [&] { return closed_ || !waiting_.empty(); });
    if (waiting_.empty()) return std::nullopt;
    const Passage passage = waiting_.front();
    waiting_.pop_front();
    return passage;
  }

 private:
  std::mutex lock_;
  std::condition_variable changed_;
  std::deque<Passage> waiting_;
  bool closed_ = false;
};

class Pipeline {
 public:
  Pipeline(std::size_t slots, const FrameStages& stages) : stages_(stages) {
    for (std::size_t slot = 0; slot < slots; ++slot)
      free_.Put({slot, 0});
  }

  void Run(std::int64_t items) {
    std::thread reader([&] { ReadAll(items); });
    std::thread writer([&] { PassOn(stages_.write, toWrite_, free_); });
    PassOn(stages_.render, toRender_, toWrite_);
    toWrite_.Close();
    reader.join();
    writer.join();
    if (error_) std::rethrow_exception(error_);
  }

 private:
  void ReadAll(std::int64_t items) {
    for (std::int64_t item = 0; item < items && !broken_; ++item) {
      const auto place = free_.Take();
      if (!Guarded([&] { return stages_.goesOn(); })) break;
      if (!Guarded([&] { return stages_.read(place->slot, item), true; })) break;
      toRender_.Put({place->slot, item});
    }
    toRender_.Close();
  }

  void PassOn(const FrameStages::Stage& stage, Belt& from, Belt& to) {
    while (const auto passage = from.Take()) {
      if (!broken_) Guarded([&] { return stage(passage->slot, passage->item), true; });
      to.Put(*passage);
    }
  }

  template <typename Action>
  bool Guarded(Action action) {
    try {
      return action();
    } catch (...) {
      const std::lock_guard hold(errorLock_);
      if (!error_) error_ = std::current_exception();
      broken_ = true;
      return false;
    }
  }

  const FrameStages& stages_;
  Belt free_;
  Belt toRender_;
  Belt toWrite_;
  std::atomic<bool> broken_ = false;
  std::mutex errorLock_;
  std::exception_ptr error_;
};

}  // namespace

void RunFramePipeline(std::size_t slots, std::int64_t items, const FrameStages& stages) {
  Pipeline(slots, stages).Run(items);
}

}  // namespace vblur::host
