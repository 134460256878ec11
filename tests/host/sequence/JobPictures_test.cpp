#include "host/sequence/JobPictures.h"

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

class JobPicturesOnDisk : public testing::Test {
 protected:
  JobPicturesOnDisk() {
    job_.folder = folder_.path();
    job_.input.emplace().file = "in.%d.png";
    job_.output.file = "out.%d.png";
  }

  void Make(const std::string& name, std::int32_t value, std::int32_t width = 3, std::int32_t depth = 8) const {
    HostImage image;
    image.Reset(depth, 4, width, 2);
    for (std::size_t i = 0; i < ComponentCount(image); ++i)
      SetComponent(image, i, value);
    PictureWriter().Write(folder_.path() / name, image, nullptr, true);
  }

  ScratchFolder folder_;
  Job job_;
};

TEST_F(JobPicturesOnDisk, ReadsAFrameOnceAndResetsItsOutput) {
  Make("in.1.png", 11);
  Make("in.2.png", 22);
  JobPictures pictures(job_);
  FrameBuffers buffers(pictures, {});
  buffers.Prepare(1, 8);
  SetComponent(*buffers.Pictures().output, 0, 99);
  std::filesystem::remove(folder_.path() / "in.1.png");
  buffers.Prepare(1, 8);
  EXPECT_EQ(Component(*buffers.Pictures().input, 0), 11);
  EXPECT_EQ(Component(buffers.Output(), 0), 0);
  buffers.Prepare(2, 8);
  EXPECT_EQ(Component(*buffers.Pictures().input, 0), 22);
  EXPECT_EQ(CaughtFailure([&] { buffers.Prepare(1, 8); })->Code(), ExitCode::CannotRead);
}

TEST_F(JobPicturesOnDisk, AFrameThatCouldNotBeReadIsReadAgain) {
  Make("in.1.png", 11);
  JobPictures pictures(job_);
  FrameBuffers buffers(pictures, {});
  buffers.Prepare(1, 8);
  EXPECT_EQ(CaughtFailure([&] { buffers.Prepare(2, 8); })->Code(), ExitCode::CannotRead);
  Make("in.1.png", 12);
  buffers.Prepare(1, 8);
  EXPECT_EQ(Component(*buffers.Pictures().input, 0), 12);
}

TEST_F(JobPicturesOnDisk, APictureWithoutANumberIsSharedByAllFrames) {
  Make("in.1.png", 11);
  Make("in.2.png", 22);
  Make("second.png", 33);
  job_.input2.emplace().file = "second.png";
  JobPictures pictures(job_);
  FrameBuffers first(pictures, {});
  FrameBuffers second(pictures, {});
  first.Prepare(1, 8);
  std::filesystem::remove(folder_.path() / "second.png");
  second.Prepare(2, 8);
  EXPECT_EQ(first.Pictures().input2, second.Pictures().input2);
  EXPECT_NE(first.Pictures().input, second.Pictures().input);
  EXPECT_EQ(Component(*second.Pictures().input2, 0), 33);
}

TEST_F(JobPicturesOnDisk, TheOutputStartsAsTheInitialPicture) {
  Make("in.1.png", 11);
  Make("start.png", 44);
  job_.output.initial = "start.png";
  JobPictures pictures(job_);
  FrameBuffers buffers(pictures, {});
  buffers.Prepare(1, 8);
  EXPECT_EQ(Component(buffers.Output(), 0), 44);
  Make("in.2.png", 22, 4);
  const auto failure = CaughtFailure([&] { buffers.Prepare(2, 8); });
  EXPECT_EQ(failure->what(), (folder_.path() / "start.png").string() + ": 3 x 2 pixels, expected the output's 4 x 2");
}

TEST_F(JobPicturesOnDisk, NamesItsFilesAndItsDepth) {
  Make("in.1.png", 11);
  Make("in.2.png", 22, 3, 16);
  job_.mask.emplace().file = "mask.%d.png";
  JobPictures pictures(job_);
  EXPECT_EQ(pictures.FilesOf(7),
            (std::vector<std::filesystem::path>{folder_.path() / "in.7.png", folder_.path() / "mask.7.png"}));
  EXPECT_EQ(pictures.DepthAt(1), 8);
  EXPECT_EQ(pictures.DepthAt(2), 16);
  job_.depth = 8;
  EXPECT_EQ(pictures.DepthAt(2), 8);
  job_.depth.reset();
  job_.input.reset();
  EXPECT_EQ(JobPictures(job_).DepthAt(1), 16);
}

}  // namespace
}  // namespace vblur::host
