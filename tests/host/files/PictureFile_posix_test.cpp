// Pictures of OpenEXR, DPX, PPM and TGA files, and what the system sets limits to.
#include "host/files/PictureFile.h"

#include <cmath>
#include <limits>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "host/files/OutputFile.h"
#include "host/files/PictureLibrary.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/HeldFormats.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/RawPictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

class PictureFileOrientation : public testing::TestWithParam<const char*> {
 protected:
  ScratchFolder folder_;
};

// The files are top-down, the picture's row 0 is the bottom.
TEST_P(PictureFileOrientation, TheFirstRowOfTheFileIsTheTop) {
  HostImage image;
  image.Reset(8, 4, 16, 16);
  image.Clear();
  for (std::size_t i = 0; i < 16 * 8 * 4; ++i)
    SetComponent(image, i, 255);
  const auto path = folder_.path() / ("picture." + std::string(GetParam()));
  PictureWriter().Write(path, image, nullptr, false);
  auto file = OIIO::ImageInput::open(path.string());
  ASSERT_TRUE(file);
  const int channels = file->spec().nchannels;
  std::vector<float> samples(static_cast<std::size_t>(16 * 16 * channels));
  ASSERT_TRUE(file->read_image(0, 0, 0, channels, OIIO::TypeDesc::FLOAT, samples.data()));
  EXPECT_LT(samples.front(), 0.1f);
  EXPECT_GT(samples.back(), 0.9f);
}

INSTANTIATE_TEST_SUITE_P(Formats, PictureFileOrientation,
                         testing::ValuesIn(HeldFormats({"png", "jpg", "tif", "exr", "dpx", "webp", "tga", "bmp", "ppm",
                                                        "sgi", "hdr"})),
                         [](const auto& format) { return std::string(format.param); });

class PictureFileOfKinds : public testing::Test {
 protected:
  template <typename Sample>
  HostImage& ReadRaw(const std::string& name, int width, int height, std::vector<std::string> channels,
                     const std::vector<Sample>& samples, std::int32_t depth) {
    const auto path = folder_.path() / name;
    OIIO::ImageSpec spec(width, height, static_cast<int>(channels.size()), OIIO::BaseTypeFromC<Sample>::value);
    spec.channelnames = channels;
    spec.alpha_channel = -1;
    for (std::size_t c = 0; c < channels.size(); ++c) {
      if (channels[c] == "A") spec.alpha_channel = static_cast<int>(c);
    }
    WriteRaw(path, path.extension() == ".exr" ? "openexr" : "png", spec, samples);
    PictureReader().ReadColour(path, depth, image_);
    return image_;
  }

  ScratchFolder folder_;
  HostImage image_;
};

TEST_F(PictureFileOfKinds, ChannelsAreFoundByName) {
  const std::vector<float> samples = {0.1f, 1.0f, 0.5f, 0.25f, 0.75f};
  EXPECT_EQ(Components(ReadRaw("z.exr", 1, 1, {"Z", "R", "G", "B", "A"}, samples, 16)),
            (std::vector<std::int32_t>{16384, 8192, 4096, 12288}));
  const std::vector<float> depthOnly = {1.0f, 0.5f, 0.25f, 7.0f};
  EXPECT_EQ(Components(ReadRaw("rgbz.exr", 1, 1, {"R", "G", "B", "Z"}, depthOnly, 16)),
            (std::vector<std::int32_t>{16384, 8192, 4096, 16384}));
}

TEST_F(PictureFileOfKinds, FloatsAreLimitedToTheRangeOfTheDepth) {
  const float infinity = std::numeric_limits<float>::infinity();
  const std::vector<float> samples = {3.0f, -infinity, std::nanf(""), 1.0f};
  EXPECT_EQ(Components(ReadRaw("f.exr", 1, 1, {"R", "G", "B", "A"}, samples, 16)),
            (std::vector<std::int32_t>{32767, -32768, 0, 16384}));
  EXPECT_EQ(Components(ReadRaw("f8.exr", 1, 1, {"R", "G", "B", "A"}, samples, 8)),
            (std::vector<std::int32_t>{255, 0, 0, 255}));
}

TEST_F(PictureFileOfKinds, AMaskOfFloatsMayBeNegative) {
  const auto exr = folder_.path() / "mask.exr";
  WriteRaw(exr, "openexr", OIIO::ImageSpec(3, 1, 1, OIIO::TypeDesc::FLOAT), std::vector<float>{1.0f, 0.5f, -1.0f});
  PictureReader().ReadMask(exr, 16, image_);
  EXPECT_EQ(Components(image_), (std::vector<std::int32_t>{32767, 16384, -32767}));
}

TEST_F(PictureFileOfKinds, ADeviceIsNoPicture) {
  EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo("/dev/null"); })->what(),
            std::string("/dev/null: cannot read: not a regular file; - reads a picture from a pipe"));
}

// The library's readers would take it for a damaged file.
TEST_F(PictureFileOfKinds, TooManyOpenFilesAreNamed) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitizer opens pipes to check addresses";
#endif
  image_.Reset(8, 4, 5, 4);
  image_.Clear();
  const auto path = folder_.path() / "whole.png";
  // The light library needs but one.
  UsePictures(PictureLibraries::Full);
  PictureWriter().Write(path, image_, nullptr, false);
  const int free = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  ::close(free);
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  // None, and one, which the error stream takes while the library is silenced.
  for (const int left : {0, 1}) {
    const rlimit few{static_cast<rlim_t>(free + left), before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &few);
    const auto failure = CaughtFailure([&] { PictureReader().ReadColour(path, 8, image_); });
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(failure->what(), path.string() + ": cannot read: Too many open files") << left;
  }
  UsePictures(PictureLibraries::Automatic);
}

// Headers of sizes out of range, without the pixels.
TEST_F(PictureFileOfKinds, PicturesWithoutPixelsOrWithTooManyAreRefused) {
  const auto none = folder_.Write("none.ppm", "P6\n0 10\n255\n");
  EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo(none); })->Code(), ExitCode::CannotRead);
  std::string targa(18, '\0');
  targa[2] = 2;
  targa[16] = 32;
  EXPECT_NE(std::string(CaughtFailure([&] { ReadPictureInfo(folder_.Write("none.tga", targa)); })->what())
                .find("no pixels (0 x 0 pixels)"),
            std::string::npos);
  const auto huge = folder_.Write("huge.ppm", "P6\n60000 60000\n255\n" + std::string(100, 'x'));
  EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo(huge); })->what(),
            huge.string() + ": cannot read: 60000 x 60000 pixels, 3600000000 in all, expected at most 1000000000");
  const auto large = folder_.Write("large.ppm", "P6\n30000 30000\n255\n" + std::string(100, 'x'));
  EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo(large); })->what(),
            large.string() + ": cannot read: 30000 x 30000 pixels are more than 2^31 components (4 a pixel)");
  const auto most = folder_.Write("most.ppm", "P6\n32768 16384\n255\n" + std::string(100, 'x'));
  EXPECT_EQ(ReadPictureInfo(most).width, 32768);
  const auto more = folder_.Write("more.ppm", "P6\n32768 16385\n255\n" + std::string(100, 'x'));
  EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo(more); })->Code(), ExitCode::CannotRead);
}

TEST_F(PictureFileOfKinds, TheNaturalDepthIsThatOfTheSamples) {
  const auto info = [&](const char* name, const char* format, const OIIO::TypeDesc& type) {
    WriteRaw(folder_.path() / name, format, OIIO::ImageSpec(1, 1, 3, type), std::vector<float>{0.0f, 0.5f, 1.0f});
    return ReadPictureInfo(folder_.path() / name).NaturalDepth();
  };
  EXPECT_EQ(info("8.png", "png", OIIO::TypeDesc::UINT8), 8);
  EXPECT_EQ(info("16.png", "png", OIIO::TypeDesc::UINT16), 16);
  EXPECT_EQ(info("h.exr", "openexr", OIIO::TypeDesc::HALF), 32);
  EXPECT_EQ(info("f.tif", "tiff", OIIO::TypeDesc::FLOAT), 32);
  EXPECT_EQ(info("d.tif", "tiff", OIIO::TypeDesc::DOUBLE), 32);
  EXPECT_EQ(info("32.exr", "openexr", OIIO::TypeDesc::UINT32), 16);
  EXPECT_EQ(info("10.dpx", "dpx", OIIO::TypeDesc::UINT16), 16);
}

}  // namespace
}  // namespace vblur::host
