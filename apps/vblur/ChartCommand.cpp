// vblur chart OUTPUT: a test chart to try the effect on.
#include "apps/vblur/Commands.h"
#include "apps/vblur/FrameOptions.h"
#include "apps/vblur/OptionText.h"
#include "apps/vblur/RunFiles.h"
#include "host/base/NameMatch.h"
#include "host/base/Utf8.h"
#include "host/files/OutputFile.h"
#include "host/jobs/FramePattern.h"
#include "host/jobs/JobCheck.h"
#include "host/studies/TestChart.h"

namespace vblur::cli {

namespace {

class ChartCommand : public Command {
 public:
  explicit ChartCommand(CLI::App& parent) : Command(parent, "chart", "Draw a test chart, still or moving") {
    App()
        ->add_option("OUTPUT", file_, "Picture to write; chart.%04d.png or chart.####.png for a sequence")
        ->required()
        ->type_name("");
    AddTextOption(*App(), "--size", "WxH", "Size in pixels [1280x720]",
                  [this](const std::string& text) { size_ = ParseWholePair("--size", text, 'x'); });
    AddTextOption(*App(), "--depth", "8|16|32", "Bits of a component; 32 are floats [8]",
                  [this](const std::string& text) { depth_ = ParseWhole("--depth", text); });
    AddFrameRangeOption(*App(), frames_);
    App()->add_flag("--overwrite", overwrite_, "Replace output files that exist");
  }

  host::ExitCode Run(const GlobalOptions&, Terminal&) override {
    const host::FramePattern pattern(file_);
    CheckOptions(pattern);
    const host::FrameRange frames = frames_.value_or(host::FrameRange{});
    for (std::int64_t i = 0; i < frames.Count(); ++i) {
      host::RequireWritable(host::PathOf(pattern.FileName(frames.FrameAt(i))), overwrite_);
    }
    host::HostImage chart;
    host::PictureWriter writer;
    for (std::int64_t i = 0; i < frames.Count(); ++i) {
      const auto frame = frames.FrameAt(i);
      host::DrawTestChart(chart, depth_, size_[0], size_[1], frame);
      writer.Write(host::PathOf(pattern.FileName(frame)), chart, nullptr, overwrite_);
    }
    return host::ExitCode::Done;
  }

 private:
  void CheckOptions(const host::FramePattern& pattern) const {
    CheckPictureName(host::PathOf(pattern.FileName(0)));
    host::CheckDepth("--depth", depth_);
    if (size_[0] < 1 || size_[1] < 1) host::Refuse("--size", "expected at least 1x1");
    if (std::int64_t{4} * size_[0] > host::HostImage::kMostComponents / size_[1]) {
      host::Refuse("--size", "more than 2^31 components (4 a pixel)");
    }
    if (pattern.HasNumber() && !frames_) host::Refuse(file_, "holds a frame number, so --frames was expected");
    if (!pattern.HasNumber() && frames_ && frames_->Count() > 1) {
      host::Refuse("OUTPUT", std::to_string(frames_->Count()) + " frames would all be written to " +
                                 host::Quoted(file_) +
                                 ", expected a file name with a frame number such as out.%04d.png");
    }
  }

  std::string file_;
  std::array<std::int32_t, 2> size_{1280, 720};
  std::int32_t depth_ = 8;
  std::optional<host::FrameRange> frames_;
  bool overwrite_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeChartCommand(CLI::App& parent) {
  return std::make_unique<ChartCommand>(parent);
}

}  // namespace vblur::cli
