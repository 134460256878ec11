// Prints a hash for each of the frames that are compared between platforms, CPU levels, numbers of threads and
// programs.
#include <cstdio>
#include <exception>

#include <CLI/CLI.hpp>

#include "host/base/Failure.h"
#include "host/files/PictureFile.h"
#include "host/jobs/JobFile.h"
#include "tests/differential/EffectRun.h"
#include "tests/differential/FrameFiles.h"
#include "tests/hashes/HashedFrames.h"
#include "tests/hashes/NumberFile.h"
#include "tests/hashes/PictureHash.h"
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
  std::uint64_t inFiles = 36;
  std::string cpu = "native";
  std::int32_t threads = 1;
};

fs::path NumbersOf(const Options& options, const std::string& file, std::int32_t depth, std::int32_t components) {
  const std::string name = file + "." + std::to_string(depth) + "." + std::to_string(components) + ".txt";
  return options.folder / "pictures" / name;
}

DrawnPicture ReadPicture(const fs::path& file, std::int32_t depth, std::int32_t components) {
  host::HostImage image;
  host::PictureReader reader;
  if (components == 4) {
    reader.ReadColour(file, depth, image);
  } else {
    reader.ReadMask(file, depth, image);
  }
  return differential::FromHostImage(image);
}

void PrintHash(const std::string& name, const DrawnPicture& picture, std::int32_t depth) {
  std::printf("%s\n", HashLine(name, picture, depth).c_str());
}

void WriteFrames(const Options& options) {
  fs::create_directories(options.folder / "pictures");
  const auto golden =
      GoldenFrames(options.golden, [&](const std::string& file, std::int32_t depth, std::int32_t components) {
        DrawnPicture picture = ReadPicture(options.golden / file, depth, components);
        WriteNumbers(picture, NumbersOf(options, file, depth, components));
        return picture;
      });
  for (const NamedFrame& each : FramesInFiles(golden, options.inFiles))
    differential::WriteFrameFiles(each.frame, options.folder / "jobs" / each.name);
}

void HashEffect(const Options& options) {
  SetCpuLevel(options.cpu);
  SetRenderThreads(options.threads);
  const auto golden =
      GoldenFrames(options.golden, [&](const std::string& file, std::int32_t depth, std::int32_t components) {
        return ReadNumbers(NumbersOf(options, file, depth, components));
      });
  for (const NamedFrame& each : golden)
    PrintHash(each.name, RenderJobFrame(each.frame), *each.frame.job.depth);
  for (std::uint64_t i = 0; i < options.count; ++i) {
    const NamedFrame random = RandomFrame(i);
    PrintHash(random.name, differential::RenderByEffect(random.frame), *random.frame.job.depth);
  }
  for (const NamedFrame& each : FramesInFiles(golden, options.inFiles)) {
    DrawnPicture picture = RenderJobFrame(each.frame);
    LimitToPng(picture, *each.frame.job.depth);
    PrintHash(each.name, picture, *each.frame.job.depth);
  }
}

// Those that are there: what is missing is seen where the lists are compared.
void HashOutputs(const Options& options) {
  const fs::path jobs = options.folder / "jobs";
  for (const auto& entry : fs::recursive_directory_iterator(jobs)) {
    if (entry.path().filename() != "job.json") continue;
    const host::Job job = host::ReadJobFile(entry.path());
    const fs::path output = job.folder / job.output.file;
    if (!fs::exists(output)) continue;
    const fs::path name = entry.path().parent_path().lexically_relative(jobs);
    PrintHash(name.generic_string(), ReadPicture(output, *job.depth, 4), *job.depth);
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
  const auto command = [&](const char* name, const char* what, auto action) {
    CLI::App* added = app.add_subcommand(name, what);
    added->callback([&options, action] { action(options); });
    return added;
  };
  const auto withFolder = [&](CLI::App* added) {
    added->add_option("FOLDER", options.folder, "Where the frames are written to")->required();
    return added;
  };
  const auto withFrames = [&](CLI::App* added) {
    added->add_option("--golden", options.golden, "The folder of golden jobs")->capture_default_str();
    added->add_option("--in-files", options.inFiles, "Random frames as files")->capture_default_str();
    return withFolder(added);
  };
  withFrames(
      command("write", "Write golden pictures as numbers, and frames as job files with PNG pictures", WriteFrames));
  CLI::App* effect = withFrames(command("effect", "Hash what the effect renders", HashEffect));
  effect->add_option("--count", options.count, "Random frames in memory")->capture_default_str();
  effect->add_option("--cpu", options.cpu, "Code to render with: a level such as twin or AVX2")->capture_default_str();
  effect->add_option("--threads", options.threads, "Threads of a render")->capture_default_str();
  withFolder(command("outputs", "Hash what a program made of the job files", HashOutputs));
  command("levels", "Print the CPU levels of the machine", [](const Options&) { PrintLevels(); });
  command("compiler", "Print what built the program", [](const Options&) { PrintCompiler(); });
  CLI11_PARSE(app, argc, argv);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return RunCommandLine(argc, argv);
  } catch (const host::Failure& failure) {
    std::fprintf(stderr, "hashes: %s\n", failure.what());
    return static_cast<int>(failure.Code());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "hashes: %s\n", error.what());
    return 1;
  }
}
