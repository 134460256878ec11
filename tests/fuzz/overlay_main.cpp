// overlay_fuzz [--seconds N] [--seed S]: runs the overlay's fuzzer, a new world every 5,000 steps, and prints the
// counts. Build with the preset asan.
#include <chrono>
#include <cstdio>
#include <map>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>

#include "tests/fuzz/OverlayFuzz.h"
#include "tests/fuzz/Program.h"

namespace vblur::test {
namespace {

int Run(int argc, char** argv) {
  double seconds = 600.0;
  std::uint64_t seed = 1;
  CLI::App app("Does anything at any time to the overlay, until the time is up or something breaks.");
  app.add_option("--seconds", seconds, "How long [600]");
  app.add_option("--seed", seed, "Of the first world; the others follow it [1]");
  CLI11_PARSE(app, argc, argv);

  constexpr int kSteps = 5000;
  std::map<std::string, std::int64_t> counts;
  std::int64_t steps = 0;
  const auto begin = std::chrono::steady_clock::now();
  const auto spent = [&] { return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count(); };
  std::uint64_t worlds = 0;
  for (; spent() < seconds; ++worlds) {
    // After a crash this is the seed that reproduces it.
    std::fprintf(stderr, "\rworld of seed %llu", static_cast<unsigned long long>(seed + worlds));
    {
      OverlayFuzz fuzz(seed + worlds);
      for (int step = 0; step < kSteps; ++step)
        fuzz.Step();
      steps += kSteps;
      for (const auto& [name, count] : fuzz.counts())
        counts[name] += count;
    }
    if (LinkedServer::LiveObjects() != 0) throw std::logic_error("effects, pages or tools are left");
  }
  std::fprintf(stderr, "\n");
  std::printf("%lld steps in %llu worlds, %.0f s\n", static_cast<long long>(steps),
              static_cast<unsigned long long>(worlds), spent());
  for (const auto& [name, count] : counts)
    std::printf("%12lld  %s\n", static_cast<long long>(count), name.c_str());
  return 0;
}

}  // namespace
}  // namespace vblur::test

int main(int argc, char** argv) {
  return vblur::test::RunProgram(vblur::test::Run, argc, argv);
}
