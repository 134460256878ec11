// Names of one file that links make.
#include <filesystem>

#include <gtest/gtest.h>

#include "host/base/NameMatch.h"
#include "host/jobs/JobCheck.h"
#include "tests/host/jobs/CheckedJobs.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

namespace fs = std::filesystem;

TEST(JobCheckLinks, LooksThroughLinks) {
  if (!kMakesLinks) GTEST_SKIP() << "the library makes no links here";
  const ScratchFolder scratch;
  scratch.Write("real.png", "x");
  fs::create_symlink(scratch.path() / "real.png", scratch.path() / "link.png");
  Job job = Still();
  job.folder = scratch.path();
  job.input->file = "real.png";
  EXPECT_NE(FailureWith(job, [](Job& j) { j.output.file = "link.png"; }), "");
}

TEST(JobCheckLinks, LooksThroughLinkedFolders) {
  if (!kMakesLinks) GTEST_SKIP() << "the library makes no links here";
  const ScratchFolder scratch;
  fs::create_directory(scratch.path() / "real");
  fs::create_directory_symlink(scratch.path() / "real", scratch.path() / "link");
  Job job = Sequence();
  job.folder = scratch.path();
  job.input->file = "real/shot.%04d.exr";
  job.output.file = "link/shot.####.exr";
  EXPECT_EQ(FailureWith(job, [](Job&) {}),
            "output: \"link/shot.0001.exr\" is the picture that input is read from, expected another file");
}

TEST(JobCheckLinks, RefusesFramesThatShareAnOutput) {
  if (!kMakesLinks) GTEST_SKIP() << "the library makes no links here";
  const ScratchFolder scratch;
  scratch.Write("out.0001.exr", "x");
  fs::create_symlink("out.0001.exr", scratch.path() / "out.0003.exr");
  Job job = Sequence();
  job.folder = scratch.path();
  const std::string shared = (scratch.path() / "out.0001.exr").string();
  for (const bool mayBeInput : {false, true}) {
    EXPECT_EQ(UsageFailureOf([&] { CheckJob(job, {.outputMayBeInput = mayBeInput}); }),
              "output: frames 1 and 3 would both be written to " + Quoted(shared) + ", expected a file for each frame");
  }
}

TEST(JobCheckLinks, FollowsUpwardStepsFromWhereTheFolderIs) {
  if (!kMakesLinks) GTEST_SKIP() << "the library makes no links here";
  const ScratchFolder scratch;
  fs::create_directories(scratch.path() / "deep/real");
  fs::create_directory_symlink(scratch.path() / "deep/real", scratch.path() / "link");
  Job job = Still();
  job.folder = scratch.path();
  job.input->file = "in.png";
  job.output.file = "link/../in.png";
  EXPECT_NO_THROW(CheckJob(job));
  job.input->file = "deep/in.png";
  EXPECT_THROW(CheckJob(job), Failure);
}

}  // namespace
}  // namespace vblur::host
