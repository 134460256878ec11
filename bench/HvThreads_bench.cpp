// What it costs to have all threads of the pool do nothing: at once after another run, and when they have gone to
// sleep meanwhile.
#include <atomic>
#include <chrono>
#include <thread>

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

void emptyRun(benchmark::State& state, std::int32_t threads, std::chrono::microseconds pause) {
  useThreads(threads);
  calls = 0;
  std::int64_t runs = 0;
  for (auto _ : state) {
    if (pause.count() > 0) std::this_thread::sleep_for(pause);
    const auto start = Clock::now();
    runOnce();
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
    ++runs;
  }
  if (calls != runs * threads) state.SkipWithError("a lost call");
}

}  // namespace

void addThreadCases() {
  constexpr std::int32_t kThreads = 2;
  for (const std::int32_t pause : {0, 1000}) {
    const CaseName name = CaseName("run").with("threads", kThreads).with("pause", pause);
    benchmark::RegisterBenchmark(
        name.text().c_str(),
        [=](benchmark::State& state) { emptyRun(state, kThreads, std::chrono::microseconds(pause)); })
        ->Unit(benchmark::kMicrosecond)
        ->Iterations(pause == 0 ? 20000 : 200)
        ->UseManualTime();
  }
}

}  // namespace vblur::bench
