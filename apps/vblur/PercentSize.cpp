#include "apps/vblur/PercentSize.h"

#include <charconv>
#include <cmath>
#include <system_error>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"
#include "host/files/PictureInfo.h"
#include "host/jobs/FramePattern.h"
#include "host/jobs/JobCheck.h"
#include "host/jobs/JobFiles.h"
#include "host/properties/PropertyText.h"

namespace vblur::cli {

namespace {

[[noreturn]] void RefuseForm(const Property& property, std::string_view text) {
  host::Refuse(property.name, "expected a percentage of 0 or more such as 10%, found " + host::Quoted(text));
}

double ReadPercent(const Property& property, std::string_view text, std::string_view number) {
  double percent = 0.0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), percent);
  const bool isRead = error == std::errc{} && end == number.data() + number.size();
  if (!isRead || !std::isfinite(percent) || percent < 0.0) RefuseForm(property, text);
  return percent;
}

// The text with a number of pixels for each percentage.
std::string InPixels(const Property& property, std::string_view text, double width) {
  std::string pixels;
  std::size_t from = 0;
  for (auto at = text.find('%'); at != std::string_view::npos; at = text.find('%', from)) {
    const std::size_t separator = text.substr(0, at).find_last_of(":, ");
    const std::size_t start = separator == std::string_view::npos ? 0 : separator + 1;
    const bool endsValue = text.substr(at + 1).find_first_not_of(' ') == std::string_view::npos ||
                           text[text.find_first_not_of(' ', at + 1)] == ',';
    if (start < from || !endsValue) RefuseForm(property, text);
    const double percent = ReadPercent(property, text, text.substr(start, at - start));
    pixels += text.substr(from, start - from);
    pixels += host::FormatNumber(percent * width / 100.0);
    from = at + 1;
  }
  pixels += text.substr(from);
  return pixels;
}

double FullWidth(const host::Job& job, std::int64_t mostPixels) {
  const double scale = std::abs(job.proxy[0]);
  double width = job.output.width.value_or(1);
  if (job.input) {
    host::ReadChoice choice;
    choice.layer = job.input->layer;
    choice.mostPixels = mostPixels;
    const host::FramePattern pattern(job.input->file);
    const auto file = host::JobFilePath(job, pattern, host::ResolveFrames(job).FrameAt(0));
    width = host::ReadPictureInfo(file, choice).display.width;
  }
  return scale > 0.0 ? width / scale : width;
}

}  // namespace

bool IsInPercent(const Property& property, std::string_view text) {
  return property.id == PropertyId::Blur && text.find('%') != std::string_view::npos;
}

void RefusePercent(std::string_view place, std::string_view text) {
  if (text.find('%') == std::string_view::npos) return;
  host::Refuse(place, "render and --set alone take percent, expected pixels, found " + host::Quoted(text));
}

void CheckPercent(const Property& property, std::string_view text) {
  host::ParseSetting(property, InPixels(property, text, 100.0));
}

void SetInPercent(host::Job& job, const Property& property, const std::string& text, std::int64_t mostPixels) {
  CheckPercent(property, text);
  const double width = FullWidth(job, mostPixels);
  try {
    job.properties.Set(property.guid, host::ParseSettingInRange(property, InPixels(property, text, width)));
  } catch (const host::Failure& failure) {
    throw host::Failure(failure.Code(), std::string(failure.what()) + "; 100% are " + host::FormatNumber(width) +
                                            " pixels, the picture's width");
  }
}

}  // namespace vblur::cli
