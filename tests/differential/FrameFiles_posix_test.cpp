// Frames whose pictures hold more than PNG files do.
#include "tests/differential/FrameFiles.h"

#include <gtest/gtest.h>

#include "tests/differential/ExpectFile.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::differential {
namespace {

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
