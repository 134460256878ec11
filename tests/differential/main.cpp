// Compares random frames of the effect with the model: any number, from any seed, at any thread count.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>

#include <CLI/CLI.hpp>

#include "host/base/Utf8.h"
#include "host/files/OutputFormat.h"
#include "host/jobs/JobFile.h"
#include "tests/differential/Comparison.h"
#include "tests/support/TestServer.h"

namespace {

struct Options {
  std::uint64_t count = 2000;
  std::uint64_t seed = 1;
  std::int64_t only = -1;
  std::int32_t threads = 0;  // 0: change from frame to frame
  bool filters = false;
  std::string keep;
  std::string cpu = "native";  // "all": every level of the machine
};

// 16-bit frames and floats hold numbers that no other files keep. Where there are none, another system draws the same
// frame.
bool CanKeep() {
  return std::ranges::any_of(vblur::host::OutputFormats(), [](const auto& format) { return format.name == "openexr"; });
}

void Explain(const Options& options, std::uint64_t index, const vblur::differential::DrawnFrame& frame,
             const std::string& difference) {
  std::printf("frame %llu of seed %llu: %s\n%s\n", static_cast<unsigned long long>(index),
              static_cast<unsigned long long>(options.seed), difference.c_str(),
              vblur::host::FormatJob(frame.job).c_str());
  if (options.keep.empty()) return;
  const std::filesystem::path folder = std::filesystem::path(options.keep) / std::to_string(index);
  vblur::differential::WriteFrame(frame, folder);
  std::printf("kept in %s\n", vblur::host::Utf8Of(folder).c_str());
}

int Run(const Options& options) {
  using namespace vblur::differential;
  const auto start = std::chrono::steady_clock::now();
  const DrawnKinds kinds = options.filters ? DrawnKinds::Filters : DrawnKinds::All;
  const std::uint64_t first = options.only >= 0 ? static_cast<std::uint64_t>(options.only) : 0;
  const std::uint64_t last = options.only >= 0 ? first + 1 : options.count;
  constexpr std::int32_t kThreads[] = {1, 2, 3, 7, 8};
  std::uint64_t wrong = 0;
  for (std::uint64_t i = first; i < last; ++i) {
    if (options.threads > 0 || i % 100 == first % 100) {
      vblur::SetRenderThreads(options.threads > 0 ? options.threads : kThreads[i / 100 % 5]);
    }
    const DrawnFrame frame = DrawFrame(options.seed, i, kinds, DrawnDepths::All);
    const std::string difference = CompareFrame(frame);
    if (options.only >= 0 || !difference.empty()) {
      Explain(options, i, frame, difference.empty() ? "equal" : difference);
    }
    wrong += difference.empty() ? 0 : 1;
    if (wrong >= 10) break;
  }
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::printf("%llu frames of seed %llu, %llu differ, %.1f s\n", static_cast<unsigned long long>(last - first),
              static_cast<unsigned long long>(options.seed), static_cast<unsigned long long>(wrong), seconds);
  return wrong == 0 ? 0 : 1;
}

int RunCommandLine(int argc, char** argv) {
  CLI::App app("Compares random frames of the effect with the model");
  Options options;
  app.add_option("--count", options.count, "How many frames")->capture_default_str();
  app.add_option("--seed", options.seed, "Where the random frames come from")->capture_default_str();
  app.add_option("--only", options.only, "One frame of the seed, by its number, and its job");
  app.add_option("--threads", options.threads, "Threads of a render; 0 goes through 1, 2, 3, 7, 8");
  app.add_flag("--filters", options.filters, "Plain filters alone");
  app.add_option("--cpu", options.cpu, "Code to render with: a level such as twin or AVX2, or all of them")
      ->capture_default_str();
  if (CanKeep()) app.add_option("--keep", options.keep, "A folder for the jobs and pictures of frames that differ");
  CLI11_PARSE(app, argc, argv);
  if (options.cpu != "all") {
    vblur::SetCpuLevel(options.cpu);
    return Run(options);
  }
  int worst = 0;
  for (const std::string& level : vblur::CpuLevels()) {
    vblur::SetCpuLevel(level);
    std::printf("%s: ", level.c_str());
    worst = std::max(worst, Run(options));
  }
  return worst;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return RunCommandLine(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "differential: %s\n", error.what());
    return 2;
  }
}
