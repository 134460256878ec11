// Prints a hash for each of the frames that are compared between platforms, CPU levels, numbers of threads and
// programs.
#include <cstdio>

#include <CLI/CLI.hpp>

#include "tests/differential/EffectRun.h"
#include "tests/differential/PngLimits.h"
#include "tests/hashes/HashedFrames.h"
#include "tests/hashes/HashedSequences.h"
#include "tests/hashes/NumberFile.h"
#include "tests/hashes/PictureHash.h"
#include "tests/hashes/ToolMain.h"
#include "tests/support/TestServer.h"

namespace {

namespace fs = std::filesystem;
using namespace vblur;
using namespace vblur::hashes;
using differential::DrawnPicture;

struct Options {
  fs::path folder;
  fs::path golden = "tests/golden/jobs";
  std::uint64_t count = 2000;
  std::uint64_t floats = 1000;
  std::uint64_t inFiles = kFramesInFiles;
  std::uint64_t sequences = kSequences;
  std::string cpu = "native";
  std::int32_t threads = 1;
};

void PrintHash(const std::string& name, const DrawnPicture& picture, std::int32_t depth) {
  std::printf("%s\n", HashLine(name, picture, depth).c_str());
}

void PrintFileHash(const NamedFrame& each) {
  DrawnPicture picture = RenderJobFrame(each.frame);
  LimitToPng(picture, *each.frame.job.depth);
  PrintHash(each.name, picture, *each.frame.job.depth);
}

void PrintRandomHash(const NamedFrame& each) {
  PrintHash(each.name, differential::RenderByEffect(each.frame), *each.frame.job.depth);
}

void HashEffect(const Options& options) {
  SetCpuLevel(options.cpu);
  SetRenderThreads(options.threads);
  const auto golden =
      GoldenFrames(options.golden, [&](const std::string& file, std::int32_t depth, std::int32_t components) {
        return ReadNumbers(NumbersOf(options.folder, file, depth, components));
      });
  for (const NamedFrame& each : golden)
    PrintHash(each.name, RenderJobFrame(each.frame), *each.frame.job.depth);
  for (std::uint64_t i = 0; i < options.count; ++i)
    PrintRandomHash(RandomFrame(i));
  for (std::uint64_t i = 0; i < options.floats; ++i)
    PrintRandomHash(FloatFrame(i));
  for (const NamedFrame& each : FramesInFiles(golden, options.inFiles))
    PrintFileHash(each);
  for (const HashedSequence& sequence : DrawSequences(options.sequences)) {
    for (const NamedFrame& each : sequence.frames)
      PrintFileHash(each);
  }
}

void PrintLevels() {
  for (const std::string& level : CpuLevels())
    std::printf("%s\n", level.c_str());
}

void PrintCompiler() {
#if defined(__clang__)
  std::printf("clang " __clang_version__ "\n");
#else
  std::printf("g++ " __VERSION__ "\n");
#endif
}

int RunCommandLine(int argc, char** argv) {
  CLI::App app("Prints the hashes of frames");
  app.require_subcommand(1);
  Options options;
  CLI::App* effect = app.add_subcommand("effect", "Hash what the effect renders");
  effect->add_option("FOLDER", options.folder, "Where hash_files_tool has written the frames to")->required();
  effect->add_option("--golden", options.golden, "The folder of golden jobs")->capture_default_str();
  effect->add_option("--count", options.count, "Random frames in memory")->capture_default_str();
  effect->add_option("--floats", options.floats, "Random frames of 32-bit floats in memory")->capture_default_str();
  effect->add_option("--in-files", options.inFiles, "Random frames as files hold them")->capture_default_str();
  effect->add_option("--sequences", options.sequences, "Sequences of random frames")->capture_default_str();
  effect->add_option("--cpu", options.cpu, "Code to render with: a level such as twin or AVX2")->capture_default_str();
  effect->add_option("--threads", options.threads, "Threads of a render")->capture_default_str();
  effect->callback([&] { HashEffect(options); });
  app.add_subcommand("levels", "Print the CPU levels of the machine")->callback(PrintLevels);
  app.add_subcommand("compiler", "Print what built the program")->callback(PrintCompiler);
  CLI11_PARSE(app, argc, argv);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  return RunTool(RunCommandLine, argc, argv);
}
