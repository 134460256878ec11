#include "host/sequence/FrameOverlap.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <exception>
#include <future>
#include <system_error>

namespace vblur::host {

namespace {

using Clock = std::chrono::steady_clock;

double Between(Clock::time_point from, Clock::time_point to) {
  return std::max(0.0, std::chrono::duration<double>(to - from).count());
}

// Runs a stage; returns what it threw. `progress` are the rows that others wait for: none come after that.
template <class Stage>
std::exception_ptr Outcome(RowProgress* progress, const Stage& stage) {
  std::exception_ptr thrown;
  try {
    stage();
  } catch (...) {
    thrown = std::current_exception();
  }
  if (progress != nullptr) progress->Abandon();
  return thrown;
}

bool IsInterruption(const std::exception_ptr& thrown) {
  try {
    std::rethrow_exception(thrown);
  } catch (const FileInterrupted&) {
    return true;
  } catch (...) {
    return false;
  }
}

// A stage that ends for want of rows says less than the one that has not made them.
void RethrowFirst(const std::array<std::exception_ptr, 3>& thrown) {
  for (const std::exception_ptr& each : thrown) {
    if (each && !IsInterruption(each)) std::rethrow_exception(each);
  }
  for (const std::exception_ptr& each : thrown) {
    if (each) std::rethrow_exception(each);
  }
}

// What a stage has come to, and when.
struct Ended {
  std::exception_ptr thrown;
  Clock::time_point at;
};

class Overlap {
 public:
  explicit Overlap(const OverlapStages& stages) : stages_(stages) {}

  bool Run(StageTimes& seconds) {
    const auto start = Clock::now();
    std::future<bool> isReady = ready_.get_future();
    std::future<Ended> reading;
    try {
      reading = std::async(std::launch::async, [&] { return Read(); });
    } catch (const std::system_error&) {
      // The system has no thread for it.
      stages_.read({[] {}, [](std::int32_t) {}});
      seconds.read += Between(start, Clock::now());
      return false;
    }
    if (!isReady.get()) {
      const Ended read = reading.get();
      seconds.read += Between(start, read.at);
      if (read.thrown) std::rethrow_exception(read.thrown);
      return false;
    }
    // Where the system has no thread for it, behind the render.
    std::future<Ended> writing = std::async(std::launch::async | std::launch::deferred, [&] { return Write(); });
    const Ended rendered = Render();
    const Ended read = reading.get();
    const Ended written = writing.get();
    seconds.read += Between(start, read.at);
    seconds.render += Between(read.at, rendered.at);
    seconds.write += Between(std::max(read.at, rendered.at), written.at);
    RethrowFirst({read.thrown, rendered.thrown, written.thrown});
    return true;
  }

 private:
  Ended Read() {
    bool isTold = false;
    const FrameBuffers::Watch watch{[&] {
                                      isTold = true;
                                      ready_.set_value(true);
                                    },
                                    [this](std::int32_t rows) { read_.Reach(rows); }};
    auto thrown = Outcome(&read_, [&] { stages_.read(watch); });
    if (!isTold) ready_.set_value(false);
    return {std::move(thrown), Clock::now()};
  }

  Ended Render() {
    auto thrown = Outcome(&rendered_, [&] {
      const std::int32_t inputHeight = stages_.inputHeight();
      const std::int32_t outputHeight = stages_.outputHeight();
      stages_.render({[&](std::int32_t bottom) { read_.WaitFor(inputHeight - bottom); },
                      [&](std::int32_t bottom) {
                        rendered_.Reach(outputHeight - bottom);
                        return true;
                      }});
    });
    return {std::move(thrown), Clock::now()};
  }

  Ended Write() {
    auto thrown = Outcome(nullptr, [&] { stages_.write(rendered_); });
    return {std::move(thrown), Clock::now()};
  }

  const OverlapStages& stages_;
  std::promise<bool> ready_;
  RowProgress read_;
  RowProgress rendered_;
};

}  // namespace

bool RunOverlapped(const OverlapStages& stages, StageTimes& seconds) {
  return Overlap(stages).Run(seconds);
}

}  // namespace vblur::host
