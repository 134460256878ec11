#include "tests/differential/FrameFiles.h"

#include <gtest/gtest.h>

#include "host/files/PictureFile.h"
#include "host/jobs/JobFile.h"
#include "tests/differential/EffectRun.h"
#include "tests/differential/PngLimits.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::differential {
namespace {

void ExpectFile(const std::filesystem::path& file, const DrawnPicture& expected, std::int32_t depth) {
  host::HostImage image;
  host::PictureReader reader;
  if (expected.components == 4) {
    reader.ReadColour(file, depth, image);
  } else {
    reader.ReadMask(file, depth, image);
  }
  const DrawnPicture found = FromHostImage(image);
  EXPECT_EQ(found.width, expected.width) << file;
  EXPECT_EQ(found.height, expected.height) << file;
  EXPECT_EQ(found.values, expected.values) << file;
}

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
  for (std::uint64_t i = 0; i < 60; ++i) {
    DrawnFrame frame = DrawFrame(5, i, DrawnKinds::All);
    if (!frame.input) continue;  // a job file needs one, or a kind without
    LimitToPng(frame);
    masks16 += frame.mask && *frame.job.depth == 16 ? 1 : 0;
    WriteFrameFiles(frame, folder.path());
    ExpectFiles(folder.path(), frame);
    host::Job read = host::ReadJobFile(folder.path() / "job.json");
    read.folder = frame.job.folder;
    EXPECT_EQ(read, frame.job);
  }
  EXPECT_GT(masks16, 3);
}

TEST(FrameFiles, KeepAMaskAsNearAsAnExrFileHoldsIt) {
  const host::ScratchFolder folder;
  DrawnFrame frame;
  frame.job.depth = 16;
  frame.job.input.emplace().file = "input.exr";
  frame.job.mask.emplace().file = "mask.exr";
  frame.job.output.file = "out.exr";
  frame.input = DrawnPicture{2, 1, 4, {-32768, 0, 1, 2, 32767, 16384, 3, 4}};
  frame.mask = DrawnPicture{3, 1, 1, {0, 32767, -20000}};
  WriteFrameFiles(frame, folder.path());
  ExpectFile(folder.path() / "input.exr", *frame.input, 16);
  ExpectFile(folder.path() / "mask.exr", {3, 1, 1, {0, 32767, -19999}}, 16);
}

}  // namespace
}  // namespace vblur::differential
