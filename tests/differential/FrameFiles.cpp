#include "tests/differential/FrameFiles.h"

#include "host/files/OutputFile.h"
#include "host/jobs/JobFile.h"
#include "tests/differential/EffectRun.h"
#include "tests/differential/PngLimits.h"

namespace vblur::differential {
namespace {

DrawnPicture AsGrey(const DrawnPicture& mask, std::int32_t depth) {
  DrawnPicture grey{mask.width, mask.height, 4, {}};
  for (const std::int32_t amount : mask.values)
    grey.values.insert(grey.values.end(), 4, depth == 16 ? ColourOfAmount(amount) : amount);
  return grey;
}

}  // namespace

void WriteFramePictures(const DrawnFrame& frame, const std::filesystem::path& folder) {
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
}

void WriteFrameFiles(const DrawnFrame& frame, const std::filesystem::path& folder) {
  WriteFramePictures(frame, folder);
  host::Job job = frame.job;
  job.folder = folder;
  host::WriteJobFile(job, folder / "job.json");
}

}  // namespace vblur::differential
