// Outputs of more channels than colours and alpha.
#include <gtest/gtest.h>

#include "tests/host/sequence/SequenceRendererTest.h"
#include "tests/support/host/WindowedPictures.h"

namespace vblur::host {
namespace {

TEST_F(SequenceRenderer, OutputsThatLackChannelsOrHaveAnotherTypeAreRenderedAgain) {
  constexpr FileWindow kWindow{0, 0, 8, 6};
  const auto channels = [](std::vector<std::string> more) {
    more.insert(more.begin(), {"R", "G", "B"});
    return more;
  };
  WriteWindowed(folder_.path() / "in.001.exr", kWindow, kWindow, channels({"Y2", "Z"}));
  job_.input->file = "in.%03d.exr";
  job_.output.file = "out.%03d.exr";
  job_.frames = FrameRange{1, 1, 1};
  options_.skipExisting = true;
  const auto warningsFor = [&](const std::vector<std::string>& more) {
    WriteWindowed(folder_.path() / "out.001.exr", kWindow, kWindow, channels(more));
    seen_.warnings.clear();
    const auto summary = Render();
    const std::string warning = seen_.warnings.empty() ? std::string() : seen_.warnings.front().second;
    EXPECT_EQ(summary.skipped, warning.empty() ? 1 : 0);
    EXPECT_EQ(Render().skipped, 1);
    return warning;
  };
  const std::string file = (folder_.path() / "out.001.exr").string();
  EXPECT_EQ(warningsFor({"Y2", "Z"}), "");
  EXPECT_EQ(warningsFor({"Y2"}), file + ": channel Z is missing; rendered again");
  job_.output.storage.type = SampleType::Half;
  EXPECT_EQ(warningsFor({"Y2", "Z"}), file + ": the samples are float, expected half; rendered again");
  // A layer's colours stand behind others.
  WriteWindowed(folder_.path() / "in.001.exr", kWindow, kWindow, channels({"far.R", "far.G", "far.B"}));
  job_.input->layer = "far";
  EXPECT_EQ(warningsFor({"far.R", "far.G", "far.B"}), "");
}

}  // namespace
}  // namespace vblur::host
