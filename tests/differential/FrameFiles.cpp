#include "tests/differential/FrameFiles.h"

#include <algorithm>

#include "host/files/OutputFile.h"
#include "host/files/Sample.h"
#include "host/jobs/JobFile.h"
#include "tests/differential/EffectRun.h"

namespace vblur::differential {
namespace {

constexpr std::int32_t kFullColour = 16384;
constexpr std::int32_t kFullAmount = 32767;

// The colour that is nearest to an amount of a 16-bit mask.
std::int16_t ColourOf(std::int32_t amount) {
  const double colour = static_cast<double>(amount) * kFullColour / kFullAmount;
  return static_cast<std::int16_t>(host::sample::Nearest(colour));
}

DrawnPicture AsGrey(const DrawnPicture& mask, std::int32_t depth) {
  DrawnPicture grey{mask.width, mask.height, 4, {}};
  for (const std::int32_t amount : mask.values)
    grey.values.insert(grey.values.end(), 4, depth == 8 ? amount : ColourOf(amount));
  return grey;
}

void RenameToPng(host::ImageRecord& record) {
  record.file = std::filesystem::path(record.file).replace_extension(".png").string();
}

}  // namespace

void WriteFrameFiles(const DrawnFrame& frame, const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  const std::int32_t depth = *frame.job.depth;
  const auto write = [&](const DrawnPicture& picture, const std::string& name) {
    host::HostImage image;
    ToHostImage(picture.components == 4 ? picture : AsGrey(picture, depth), depth, {}, image);
    host::PictureWriter().Write(folder / name, image, nullptr, true);
  };
  if (frame.job.output.initial) write(frame.initial, *frame.job.output.initial);
  if (frame.input) write(*frame.input, frame.job.input->file);
  if (frame.input2) write(*frame.input2, frame.job.input2->file);
  if (frame.mask) write(*frame.mask, frame.job.mask->file);
  host::Job job = frame.job;
  job.folder = folder;
  host::WriteJobFile(job, folder / "job.json");
}

void LimitToPng(DrawnPicture& picture, std::int32_t depth) {
  if (depth == 8) return;
  for (std::int32_t& value : picture.values) {
    if (picture.components == 4) {
      value = std::clamp(value, 0, kFullColour);
    } else {
      const auto sample = host::ToSample<std::uint16_t>(ColourOf(value));
      value = host::FromSample<std::int16_t>(sample, host::ComponentUse::Amount);
    }
  }
}

void LimitToPng(DrawnFrame& frame) {
  host::Job& job = frame.job;
  for (DrawnPicture* picture : {&frame.initial, frame.input ? &*frame.input : nullptr,
                                frame.input2 ? &*frame.input2 : nullptr, frame.mask ? &*frame.mask : nullptr}) {
    if (picture != nullptr) LimitToPng(*picture, *job.depth);
  }
  RenameToPng(job.output);
  if (job.output.initial)
    job.output.initial = std::filesystem::path(*job.output.initial).replace_extension(".png").string();
  if (job.input) RenameToPng(*job.input);
  if (job.input2) RenameToPng(*job.input2);
  if (job.mask) RenameToPng(*job.mask);
}

}  // namespace vblur::differential
