// Names in which Windows sees one file.
#include "host/jobs/FramePattern.h"

#include <gtest/gtest.h>

#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

TEST(FramePattern, FindsFramesInAnyCase) {
  const ScratchFolder scratch;
  for (const char* name : {"Shot.0001.png", "SHOT.0003.PNG", "shot.7.png", "other.0004.png"})
    scratch.Write(name, "x");
  EXPECT_EQ(FramePattern("sHot.%04d.Png").FramesOnDisk(scratch.path()), (std::vector<std::int32_t>{1, 3}));
}

}  // namespace
}  // namespace vblur::host
