// Writes the frames that are compared as files, for the programs of all platforms, and hashes what the programs made of
// them.

#include <CLI/CLI.hpp>

#include "host/files/PictureFile.h"
#include "host/jobs/FramePattern.h"
#include "host/jobs/JobFile.h"
#include "tests/differential/EffectRun.h"
#include "tests/differential/FrameFiles.h"
#include "tests/hashes/HashedFrames.h"
#include "tests/hashes/HashedSequences.h"
#include "tests/hashes/NumberFile.h"
#include "tests/hashes/PictureHash.h"
#include "tests/hashes/ToolMain.h"

namespace {

namespace fs = std::filesystem;
using namespace vblur;
using namespace vblur::hashes;
using differential::DrawnPicture;

struct Options {
  fs::path folder;
  fs::path golden = "tests/golden/jobs";
  std::uint64_t inFiles = kFramesInFiles;
  std::uint64_t sequences = kSequences;
};

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

void WriteFrames(const Options& options) {
  fs::create_directories(options.folder / "pictures");
  const auto golden =
      GoldenFrames(options.golden, [&](const std::string& file, std::int32_t depth, std::int32_t components) {
        DrawnPicture picture = ReadPicture(options.golden / file, depth, components);
        WriteNumbers(picture, NumbersOf(options.folder, file, depth, components));
        return picture;
      });
  for (const NamedFrame& each : FramesInFiles(golden, options.inFiles))
    differential::WriteFrameFiles(each.frame, options.folder / "jobs" / each.name);
  for (HashedSequence& sequence : DrawSequences(options.sequences)) {
    sequence.job.folder = options.folder / "jobs" / sequence.name;
    for (const NamedFrame& each : sequence.frames)
      differential::WriteFramePictures(each.frame, sequence.job.folder);
    host::WriteJobFile(sequence.job, sequence.job.folder / "job.json");
  }
}

void HashOutput(const host::Job& job, const std::string& name, std::int32_t frame) {
  const fs::path output = job.folder / host::FramePattern(job.output.file).FileName(frame);
  if (fs::exists(output)) std::puts(HashLine(name, ReadPicture(output, *job.depth, 4), *job.depth).c_str());
}

// Those that are there: what is missing is seen where the lists are compared.
void HashOutputs(const Options& options) {
  const fs::path jobs = options.folder / "jobs";
  for (const auto& entry : fs::recursive_directory_iterator(jobs)) {
    if (entry.path().filename() != "job.json") continue;
    const host::Job job = host::ReadJobFile(entry.path());
    const std::string name = entry.path().parent_path().lexically_relative(jobs).generic_string();
    if (!job.frames) HashOutput(job, name, 0);
    for (std::int64_t i = 0; job.frames && i < job.frames->Count(); ++i) {
      const std::int32_t frame = job.frames->FrameAt(i);
      HashOutput(job, Numbered(name, static_cast<std::uint64_t>(frame)), frame);
    }
  }
}

int RunCommandLine(int argc, char** argv) {
  CLI::App app("Writes frames as files, and hashes what became of them");
  app.require_subcommand(1);
  Options options;
  CLI::App* write =
      app.add_subcommand("write", "Golden pictures as numbers, and frames as job files with PNG pictures");
  write->add_option("FOLDER", options.folder, "Where to")->required();
  write->add_option("--golden", options.golden, "The folder of golden jobs")->capture_default_str();
  write->add_option("--in-files", options.inFiles, "Random frames among the job files")->capture_default_str();
  write->add_option("--sequences", options.sequences, "Sequences of random frames")->capture_default_str();
  write->callback([&] { WriteFrames(options); });
  CLI::App* outputs = app.add_subcommand("outputs", "Hash the outputs of the job files");
  outputs->add_option("FOLDER", options.folder, "Where they were written to")->required();
  outputs->callback([&] { HashOutputs(options); });
  CLI11_PARSE(app, argc, argv);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  return RunTool(RunCommandLine, argc, argv);
}
