// The overhead of an empty run on all threads of the pool: right after another run, and after the threads went to
// sleep.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "bench/Cases.h"
#include "image/HvThreads.h"

namespace vblur::bench {

namespace {

using Clock = std::chrono::steady_clock;

std::atomic<std::int64_t> calls;

void countCall(HvWord) {
  calls.fetch_add(1, std::memory_order_relaxed);
}

void runOnce() {
  HvThreadRun(reinterpret_cast<HvThreadFunction>(&countCall), 1, HvWord{0});
}

// Reports the median of many runs, which ignores those that another process disturbed.
void emptyRun(benchmark::State& state, std::int32_t threads, std::size_t runs, std::chrono::microseconds pause) {
  useThreads(threads);
  calls = 0;
  std::int64_t expected = 0;
  std::vector<double> seconds(runs);
  for (auto _ : state) {
    for (double& time : seconds) {
      if (pause.count() > 0) std::this_thread::sleep_for(pause);
      const auto start = Clock::now();
      runOnce();
      time = std::chrono::duration<double>(Clock::now() - start).count();
      expected += threads;
    }
    const auto middle = seconds.begin() + static_cast<std::ptrdiff_t>(runs / 2);
    std::nth_element(seconds.begin(), middle, seconds.end());
    state.SetIterationTime(*middle);
  }
  if (calls != expected) state.SkipWithError("a lost call");
}

}  // namespace

void addThreadCases() {
  constexpr std::int32_t kThreads = 2;
  for (const std::int32_t pause : {0, 1000}) {
    const CaseName name = CaseName("run").with("threads", kThreads).with("pause", pause);
    benchmark::RegisterBenchmark(name.text().c_str(),
                                 [=](benchmark::State& state) {
                                   emptyRun(state, kThreads, pause == 0 ? 5001 : 201, std::chrono::microseconds(pause));
                                 })
        ->Unit(benchmark::kMicrosecond)
        ->Iterations(3)
        ->UseManualTime();
  }
}

}  // namespace vblur::bench
