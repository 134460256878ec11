#include "tests/differential/Comparison.h"

#include <bit>
#include <sstream>

#include "host/files/OutputFile.h"
#include "tests/differential/EffectRun.h"
#include "tests/differential/FrameFiles.h"
#include "tests/differential/ModelRun.h"

namespace vblur::differential {
namespace {

// A float with all of its bits.
std::string Shown(std::int32_t component, std::int32_t depth) {
  if (depth != 32) return std::to_string(component);
  std::ostringstream text;
  text << std::bit_cast<float>(component) << " (0x" << std::hex << static_cast<std::uint32_t>(component) << ")";
  return text.str();
}

}  // namespace

std::string Difference(const DrawnPicture& effect, const DrawnPicture& model, std::int32_t depth) {
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
         std::to_string(first % components) + ": effect " + Shown(effect.values[first], depth) + ", model " +
         Shown(model.values[first], depth);
}

std::string CompareFrame(const DrawnFrame& frame) {
  return Difference(RenderByEffect(frame), RenderByModel(frame), *frame.job.depth);
}

void WriteFrame(const DrawnFrame& frame, const std::filesystem::path& folder) {
  WriteFrameFiles(frame, folder);
  const std::int32_t depth = *frame.job.depth;
  host::HostImage expected;
  ToHostImage(RenderByModel(frame), depth, {}, expected);
  host::PictureWriter().Write(folder / (depth == 8 ? "expected.png" : "expected.exr"), expected, nullptr, true);
}

}  // namespace vblur::differential
