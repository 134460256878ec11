#include "tests/differential/FrameFiles.h"

#include <gtest/gtest.h>

#include "host/jobs/JobFile.h"
#include "tests/differential/ExpectFile.h"
#include "tests/differential/PngLimits.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::differential {
namespace {

void ExpectFiles(const std::filesystem::path& folder, const DrawnFrame& frame) {
  const std::int32_t depth = *frame.job.depth;
  ExpectFile(folder / *frame.job.output.initial, frame.initial, depth);
  if (frame.input) ExpectFile(folder / frame.job.input->file, *frame.input, depth);
  if (frame.input2) ExpectFile(folder / frame.job.input2->file, *frame.input2, depth);
  if (frame.mask) ExpectFile(folder / frame.job.mask->file, *frame.mask, depth);
}

TEST(FrameFiles, GiveBackALimitedFrame) {
  const host::ScratchFolder folder;
  int masks16 = 0;
  int masks32 = 0;
  for (std::uint64_t i = 0; i < 90; ++i) {
    DrawnFrame frame = DrawFrame(5, i, DrawnKinds::All, DrawnDepths::All);
    if (!frame.input) continue;  // a job file needs one, or a kind without
    LimitToPng(frame);
    masks16 += frame.mask && *frame.job.depth == 16 ? 1 : 0;
    masks32 += frame.mask && *frame.job.depth == 32 ? 1 : 0;
    WriteFrameFiles(frame, folder.path());
    ExpectFiles(folder.path(), frame);
    host::Job read = host::ReadJobFile(folder.path() / "job.json");
    read.folder = frame.job.folder;
    EXPECT_EQ(read, frame.job);
  }
  EXPECT_GT(masks16, 3);
  EXPECT_GT(masks32, 2);
}

}  // namespace
}  // namespace vblur::differential
