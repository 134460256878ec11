#include "tests/differential/Comparison.h"

#include "host/files/OutputFile.h"
#include "host/jobs/JobFile.h"
#include "tests/differential/EffectRun.h"
#include "tests/differential/ModelRun.h"

namespace vblur::differential {

std::string Difference(const DrawnPicture& effect, const DrawnPicture& model) {
  if (effect.width != model.width || effect.height != model.height) return "the sizes differ";
  std::size_t wrong = 0;
  std::size_t first = 0;
  for (std::size_t i = 0; i < model.values.size(); ++i) {
    if (effect.values[i] == model.values[i]) continue;
    if (wrong++ == 0) first = i;
  }
  if (wrong == 0) return {};
  const auto components = static_cast<std::size_t>(model.components);
  const std::size_t pixel = first / components;
  const auto width = static_cast<std::size_t>(model.width);
  return std::to_string(wrong) + " of " + std::to_string(model.values.size()) + " components differ, first at x " +
         std::to_string(pixel % width) + ", y " + std::to_string(pixel / width) + ", component " +
         std::to_string(first % components) + ": effect " + std::to_string(effect.values[first]) + ", model " +
         std::to_string(model.values[first]);
}

std::string CompareFrame(const DrawnFrame& frame) {
  return Difference(RenderByEffect(frame), RenderByModel(frame));
}

void WriteFrame(const DrawnFrame& frame, const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  host::PictureWriter writer;
  const auto write = [&](const DrawnPicture& picture, const std::string& name) {
    // A mask is written as a grey picture, of which the first channel is read.
    DrawnPicture colour{picture.width, picture.height, 4, {}};
    const auto components = static_cast<std::size_t>(picture.components);
    const std::int32_t depth = *frame.job.depth;
    for (std::size_t i = 0; i < picture.values.size(); i += components) {
      for (std::size_t c = 0; c < 4; ++c)
        colour.values.push_back(picture.values[i + (components == 4 ? c : 0)]);
    }
    host::HostImage image;
    ToHostImage(colour, depth, {}, image);
    writer.Write(folder / name, image, nullptr, true);
  };
  write(frame.initial, *frame.job.output.initial);
  if (frame.input) write(*frame.input, frame.job.input->file);
  if (frame.input2) write(*frame.input2, frame.job.input2->file);
  if (frame.mask) write(*frame.mask, frame.job.mask->file);
  write(RenderByModel(frame), *frame.job.depth == 8 ? "expected.png" : "expected.exr");
  host::Job job = frame.job;
  job.folder = folder;
  host::WriteJobFile(job, folder / "job.json");
}

}  // namespace vblur::differential
