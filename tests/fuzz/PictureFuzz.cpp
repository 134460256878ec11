#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "host/files/PictureReport.h"
#include "host/jobs/FramePattern.h"
#include "host/sequence/FrameMemory.h"
#include "host/sequence/JobPictures.h"
#include "tests/fuzz/FileChecks.h"
#include "tests/fuzz/FileFuzz.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::test {

namespace {

using host::PictureInfo;

constexpr std::int64_t kMostPixels = 1'000'000;
constexpr std::int64_t kMemory = std::int64_t{64} << 20;

// Formats are recognised by their first bytes, but for some: these are read by the extension alone.
std::string ExtensionFor(std::string_view bytes) {
  constexpr std::array<std::pair<std::string_view, const char*>, 7> kByBeginning{{
      {"DDS ", ".dds"},
      {"SIMPLE", ".fits"},
      {std::string_view("\0\0\1\0", 4), ".ico"},
      {std::string_view("\x53\x80\xf6\x34", 4), ".pic"},
      {std::string_view("\x2f\x08\x67\xab", 4), ".zfile"},
      {std::string_view("\xab\x67\x08\x2f", 4), ".zfile"},
      {std::string_view("\0\0\0", 3), ".rla"},
  }};
  for (const auto& [beginning, extension] : kByBeginning) {
    if (bytes.starts_with(beginning)) return extension;
  }
  return ".tga";
}

std::filesystem::path WriteFile(std::string_view bytes, const std::string& extension) {
  static const host::ScratchFolder scratch;
  return scratch.Write("picture" + extension, bytes);
}

void CheckInfo(const PictureInfo& info) {
  const auto isChannel = [&](int channel) { return channel < info.channels; };
  const host::ChannelChoice& choice = info.choice;
  Demand(info.width > 0 && info.height > 0, "a picture without pixels");
  Demand(std::int64_t{info.width} * info.height <= kMostPixels, "more pixels than are allowed");
  Demand(info.data.width > 0 && info.data.height > 0, "a data window without pixels");
  Demand(info.all.size() == static_cast<std::size_t>(info.channels), "a list of channels that lacks some");
  Demand(isChannel(choice.red) && isChannel(choice.green) && isChannel(choice.blue) && isChannel(choice.alpha),
         "a channel that is not in the file");
  Demand(info.Taken().count > 0 && info.Taken().first + info.Taken().count <= info.channels,
         "channels are taken that are not in the file");
  Demand(info.pictures > 0, "a file without a picture");
}

// As `vblur info` does.
void Report(const std::filesystem::path& path) {
  const host::PictureReport report = host::ReportPicture(path);
  CheckInfo(report.info);
  for (const host::OutputFormat& format : host::OutputFormats())
    host::LossesOf(report, format, {}, report.info.NaturalDepth());
}

// As a render reads its input, and its mask if the job has one.
std::vector<std::byte> Read(const host::Job& job, std::int32_t depth) {
  host::JobPictures pictures(job, kMostPixels);
  RequireMemory(EstimateFrameMemory(job, pictures, 0, {depth}), kMemory, job.output.file);
  host::FrameBuffers buffers(pictures, {});
  buffers.Prepare(0, depth);
  const host::HostImage& image = *buffers.Pictures().input;
  const PictureInfo info = pictures.InputInfo(0);
  Demand(image.Width() == info.width && image.Height() == info.height, "a picture of another size than its file says");
  return {image.Row(0), image.Row(0) + image.ByteCount()};
}

bool CheckFile(const std::filesystem::path& path) {
  return Accepts([&] {
    host::ReadChoice choice;
    choice.mostPixels = kMostPixels;
    const PictureInfo info = host::ReadPictureInfo(path, choice);
    CheckInfo(info);
    Report(path);
    host::Job job;
    job.input.emplace().file = host::FramePattern::Escaped(path.string());
    job.output.file = "out.exr";
    const auto alone = Read(job, info.NaturalDepth());
    job.mask.emplace().file = job.input->file;
    Demand(Read(job, info.NaturalDepth()) == alone, "a file that is another picture when it is read again");
  });
}

}  // namespace

bool CheckPicture(std::string_view bytes) {
  return CheckFile(WriteFile(bytes, "")) || CheckFile(WriteFile(bytes, ExtensionFor(bytes)));
}

}  // namespace vblur::test
