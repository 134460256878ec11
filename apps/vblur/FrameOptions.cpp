#include "apps/vblur/FrameOptions.h"

#include "apps/vblur/OptionText.h"
#include "host/base/Failure.h"
#include "host/jobs/JobFiles.h"

namespace vblur::cli {

namespace {

constexpr std::string_view kOutside[] = {"keep", "clear"};
constexpr std::string_view kFields[] = {"frame", "first", "second", "both"};

void SetOrigin(host::Job& job, const std::string& text) {
  const auto origin = ParseWholePair("--origin", text);
  job.output.origin = origin;
  if (job.input) job.input->origin = origin;
}

double ParsePositive(std::string_view option, const std::string& text) {
  const double number = ParseNumber(option, text);
  if (!(number > 0.0)) host::Refuse(option, "expected more than 0, found " + text);
  return number;
}

void SetProxy(host::Job& job, const std::string& text) {
  job.proxy = ParseNumberPair("--proxy", text);
  if (!(job.proxy[0] > 0.0 && job.proxy[1] > 0.0)) {
    host::Refuse("--proxy", "expected two factors of more than 0, found " + text);
  }
}

}  // namespace

void AddFrameRangeOption(CLI::App& app, std::optional<host::FrameRange>& frames) {
  AddTextOption(app, "--frames", "A-B|A-BxSTEP", "Frames to draw; they replace %04d, #### or @@@@ in the file name",
                [&](const std::string& text) { frames = host::ParseFrameRange(text); })
      ->group("Frames");
}

void AddFramesOption(CLI::App& app, std::optional<host::FrameChoice>& frames) {
  AddTextOption(app, "--frames", "A-B|A-BxSTEP|A-|all|LIST",
                "Frames to render, such as 1-48, 1,3,5-9x2, 10- (to the last that exists) or all (that exist); they "
                "replace %04d, #### or @@@@ in file names",
                [&](const std::string& text) { frames = host::FrameChoice::Parse(text); })
      ->group("Frames");
}

void AddRenumberOption(CLI::App& app, const std::string& frame, std::optional<std::int32_t>& number) {
  AddTextOption(app, "--renumber", "N",
                "Number in the output's name for " + frame + "; the others follow [each its own]",
                [&](const std::string& text) { number = ParseWhole("--renumber", text); })
      ->group("Frames");
}

host::FrameList FramesOf(const host::FrameChoice& choice, const host::Job& job) {
  return choice.Among(choice.IsOpen() ? host::FramesOnDisk(job) : std::vector<std::int32_t>{});
}

void AddFrameOptions(CLI::App& app, host::Job& job, std::optional<host::FrameChoice>& frames) {
  const auto add = [&](const char* name, const char* form, const char* help,
                       const std::function<void(const std::string&)>& set) {
    AddTextOption(app, name, form, help, set)->group("Frames");
  };
  AddFramesOption(app, frames);
  AddRenumberOption(app, "the first frame, or for --start", job.output.renumber);
  add("--depth", "8|16|32",
      "Bits of a component while rendering; 32 are floats [8 for inputs of 8-bit samples, 32 for half and float, else "
      "16]",
      [&](const std::string& text) { job.depth = ParseWhole("--depth", text); });
  add("--field", "frame|first|second|both", "Whole frames, one field, or both fields of interlaced frames [frame]",
      [&](const std::string& text) {
        job.field = static_cast<host::FieldChoice>(ParseChoice("--field", text, kFields));
      });
  add("--roi", "X,Y,W,H", "Render only this region, in pixels from the lower left corner [the whole picture]",
      [&](const std::string& text) {
        const auto roi = ParseWholeFour("--roi", text);
        job.roi = host::Region{roi[0], roi[1], roi[2], roi[3]};
      });
  add("--outside", "keep|clear",
      "Outside --roi: the input, or nothing [keep, where it has the output's size and place]",
      [&](const std::string& text) {
        job.outside = static_cast<host::OutsideChoice>(ParseChoice("--outside", text, kOutside));
      });
  add("--start", "N",
      "Frame that --time is the time of; give it when a sequence is rendered in parts [the first frame]",
      [&](const std::string& text) { job.start = ParseWhole("--start", text); });
  add("--time", "T", "Time of the frame --start, in units of the keys: one a frame [0]",
      [&](const std::string& text) { job.time = ParseNumber("--time", text); });
  add("--duration", "D", "Length of the effect in frames [the number of frames]",
      [&](const std::string& text) { job.duration = ParsePositive("--duration", text); });
  add("--proxy", "SX,SY", "Scale of the pictures against full resolution, such as 0.5,0.5 [1,1]",
      [&](const std::string& text) { SetProxy(job, text); });
  add("--origin", "X,Y", "Pixel of the lower left corner of input and output [0,0]",
      [&](const std::string& text) { SetOrigin(job, text); });
}

}  // namespace vblur::cli
