#include "tests/differential/PngLimits.h"

#include <algorithm>
#include <bit>
#include <filesystem>

#include "host/files/Sample.h"

namespace vblur::differential {
namespace {

constexpr std::int32_t kFullColour = 16384;
constexpr std::int32_t kFullAmount = 32767;

void RenameToPng(host::ImageRecord& record) {
  record.file = std::filesystem::path(record.file).replace_extension(".png").string();
}

}  // namespace

std::int16_t ColourOfAmount(std::int32_t amount) {
  const double colour = static_cast<double>(amount) * kFullColour / kFullAmount;
  return static_cast<std::int16_t>(host::sample::Nearest(colour));
}

void LimitToPng(DrawnPicture& picture, std::int32_t depth) {
  if (depth == 8) return;
  for (std::int32_t& value : picture.values) {
    if (depth == 32) {
      const auto sample = host::ToSample<std::uint16_t>(std::bit_cast<float>(value));
      value = std::bit_cast<std::int32_t>(host::FromSample<float>(sample));
    } else if (picture.components == 4) {
      value = std::clamp(value, 0, kFullColour);
    } else {
      const auto sample = host::ToSample<std::uint16_t>(ColourOfAmount(value));
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
  std::optional<host::SampleType>& type = job.output.storage.type;
  if (type == host::SampleType::Half || type == host::SampleType::Float) type = host::SampleType::Unsigned16;
  if (job.output.initial)
    job.output.initial = std::filesystem::path(*job.output.initial).replace_extension(".png").string();
  if (job.input) RenameToPng(*job.input);
  if (job.input2) RenameToPng(*job.input2);
  if (job.mask) RenameToPng(*job.mask);
}

}  // namespace vblur::differential
