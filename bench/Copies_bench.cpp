// The floor: what it costs to move a picture's bytes, by the same pool of threads.
#include "bench/Pictures.h"
#include "image/SimpleCopySampler.h"

namespace vblur::bench {

namespace {

// Anything that reads the source, writes an intermediate, reads it and writes a result moves these bytes.
template <class Pixel>
void fourCopies(benchmark::State& state, std::int32_t threads, const Size& size) {
  useThreads(threads);
  Pictures<Pixel>& all = pictures<Pixel>(size);
  clear(all.result);
  SimpleCopySampler<Pixel, Ri> copy;
  for (auto _ : state) {
    copy.process(&all.source, &all.between);
    copy.process(&all.between, &all.result);
  }
  if (hashOf(all.result) != hashOf(all.source)) state.SkipWithError("a wrong copy");
}

// What reads a source and a result and writes a result moves no more than this.
template <class Pixel>
void copySourceAndResult(benchmark::State& state, const Size& size) {
  useThreads(1);
  Pictures<Pixel>& all = pictures<Pixel>(size);
  static HvTexture<Pixel, Ri> target(size.width, size.height);
  clear(target);
  SimpleCopySampler<Pixel, Ri> copy;
  for (auto _ : state) {
    copy.process(&all.source, &all.between);
    copy.process(&all.result, &target);
  }
  if (hashOf(all.between) != hashOf(all.source) || hashOf(target) != hashOf(all.result)) {
    state.SkipWithError("a wrong copy");
  }
}

template <class Pixel>
void addCases(const Plan& plan) {
  const std::int32_t depth = 8 * static_cast<std::int32_t>(sizeof(ComponentOf<Pixel>));
  for (const Size& size : plan.sizes()) {
    for (const std::int32_t threads : {1, 2}) {
      addCase(CaseName("copies").with("depth", depth).with("threads", threads).with(size),
              [=](benchmark::State& state) { fourCopies<Pixel>(state, threads, size); });
    }
  }
  addCase(CaseName("copyboth").with("depth", depth).with("threads", 1).with(Size()),
          [](benchmark::State& state) { copySourceAndResult<Pixel>(state, Size()); });
}

}  // namespace

void addCopyCases(const Plan& plan) {
  addCases<R8>(plan);
  addCases<R16>(plan);
}

}  // namespace vblur::bench
