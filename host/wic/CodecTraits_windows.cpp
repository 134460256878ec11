#include "host/wic/CodecTraits.h"

#include <string_view>
#include <utility>

#include "host/formats/FileHeader.h"
#include "host/wic/CodecTrials.h"
#include "host/wic/PixelForms.h"
#include "host/wic/TrialAnswers.h"

namespace vblur::host {

namespace {

PartsLacking FindLacking(const OutputFormat& format) {
  PartsLacking lacking;
  for (const SampleType type : {SampleType::Unsigned8, SampleType::Unsigned16}) {
    const ::GUID& grey = *FormsFor(format.name, PixelLayout::Grey, type).front();
    if (format.types.Has(type) && !TryForm(format.name, grey)) lacking.greys.Add(type);
  }
  if (format.hasQuality) lacking.quality = !TryQuality(format.name);
  if (format.name != "tiff") return lacking;
  // Of those that the format does not have here, too.
  for (const std::string_view compression : kTiffCompressions) {
    const std::string written = WrittenTiffCompression(std::string(compression));
    if (written != compression) lacking.compressions.emplace(compression, written);
  }
  return lacking;
}

}  // namespace

bool SwapsPngSamples() {
  static TrialAnswers<std::string_view, bool> answers;
  return answers.Of("png", [] { return TrySwap("png"); });
}

std::optional<TiffSamples> TiffSamplesOf(bool isBig, bool isWhiteLeast) {
  static TrialAnswers<std::pair<bool, bool>, std::optional<TiffSamples>> answers;
  return answers.Of({isBig, isWhiteLeast}, [&] { return TryTiffSamples(isBig, isWhiteLeast); });
}

std::string WrittenTiffCompression(const std::string& asked) {
  static TrialAnswers<std::string, std::string> answers;
  const std::string option = asked == "none" || asked == "lzw" ? asked : "zip";
  return answers.Of(option, [&] { return TryTiffCompression(option); });
}

const PartsLacking& LackingOf(const OutputFormat& format) {
  static TrialAnswers<std::string_view, PartsLacking> answers;
  return answers.Of(format.name, [&] { return FindLacking(format); });
}

}  // namespace vblur::host
