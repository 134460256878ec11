#include "host/sequence/ReplacedInputs.h"

#include <vector>

namespace vblur::host {

namespace {

// What the job itself leaves out of its input.
std::vector<std::string> LossesOfJob(const Job& job, const PictureInfo& info) {
  std::vector<std::string> losses;
  const OutputRecord& output = job.output;
  const bool isOneField = job.field == FieldChoice::First || job.field == FieldChoice::Second;
  if (isOneField && !output.initial) losses.emplace_back("the rows of the other field");
  if (job.roi && job.outside == OutsideChoice::Clear && !output.initial) {
    losses.emplace_back("what lies outside the region");
  }
  if (output.width.value_or(info.width) < info.width || output.height.value_or(info.height) < info.height) {
    losses.emplace_back("pixels beyond the output's size");
  }
  if (job.input && output.origin != job.input->origin) losses.emplace_back("pixels beside the output");
  return losses;
}

// Of a picture that the output is not made like.
std::string LossesOfOther(const Job& job, const PictureReport& report, const ReplacedInput& replaced,
                          const OutputFormat& format, std::int32_t depth) {
  const OutputStorage& storage = replaced.storage;
  const std::optional<PictureInfo>& input = replaced.input;
  const SampleType written =
      input ? OutputTypeOf(*input, format, storage) : NearestType(format, storage.type.value_or(TypeForDepth(depth)));
  const PixelLayout pixels = NearestLayout(format, input && input->IsGrey(), !input || input->HasAlpha());
  std::vector<Loss> losses = LossesBesideOf(report, format, storage, written, pixels, depth);
  const auto isLess = [&](const std::optional<std::int32_t>& asked, std::int32_t ofInput, std::int32_t own) {
    return asked.value_or(ofInput) < own;
  };
  const PictureInfo& info = report.info;
  if (isLess(job.output.width, input ? input->width : 0, info.width) ||
      isLess(job.output.height, input ? input->height : 0, info.height)) {
    losses.push_back({LossKind::Windows, "pixels beyond the output's size"});
  }
  return ListOf(losses);
}

}  // namespace

std::string LossesOfReplaced(const Job& job, const ReplacedInput& replaced, std::int32_t depth) {
  const PictureReport report = ReportPicture(replaced.file);
  const OutputFormat& format = OutputFormatOf(replaced.output, replaced.storage);
  if (!replaced.isInput) return LossesOfOther(job, report, replaced, format, depth);
  std::string lost = ListOf(LossesOf(report, format, replaced.storage, depth));
  for (const std::string& left : LossesOfJob(job, report.info))
    lost += (lost.empty() ? "" : ", ") + left;
  return lost;
}

}  // namespace vblur::host
