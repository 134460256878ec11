// job_fuzz [--count N] [--seed S] [--only I]: renders random jobs with extreme numbers and prints what became of them.
// Build with the preset asan.
#include <cstdio>

#include <CLI/CLI.hpp>

#include "tests/fuzz/JobFuzz.h"
#include "tests/fuzz/Program.h"

namespace vblur::test {
namespace {

int Run(int argc, char** argv) {
  std::uint64_t count = 100000;
  std::uint64_t seed = 1;
  std::int64_t only = -1;
  CLI::App app("Renders random jobs with extreme numbers, until all are rendered or something breaks.");
  app.add_option("--count", count, "How many [100000]");
  app.add_option("--seed", seed, "Where they come from [1]");
  app.add_option("--only", only, "One of them, by its number");
  CLI11_PARSE(app, argc, argv);

  JobFuzz fuzz(seed);
  const std::uint64_t first = only < 0 ? 0 : static_cast<std::uint64_t>(only);
  const std::uint64_t end = only < 0 ? count : first + 1;
  for (std::uint64_t index = first; index < end; ++index) {
    // After a crash this is the frame that reproduces it.
    if (index % 100 == 0 || only >= 0) std::fprintf(stderr, "\rframe %llu", static_cast<unsigned long long>(index));
    fuzz.Render(index);
  }
  const auto& counts = fuzz.counts();
  std::fprintf(stderr, "\n");
  std::printf(
      "%llu frames of seed %llu: %lld rendered, %lld refused by the host, %lld by the effect, %lld out of memory\n",
      static_cast<unsigned long long>(end - first), static_cast<unsigned long long>(seed),
      static_cast<long long>(counts.rendered), static_cast<long long>(counts.refusedByHost),
      static_cast<long long>(counts.refusedByEffect), static_cast<long long>(counts.outOfMemory));
  return 0;
}

}  // namespace
}  // namespace vblur::test

int main(int argc, char** argv) {
  return vblur::test::RunProgram(vblur::test::Run, argc, argv);
}
