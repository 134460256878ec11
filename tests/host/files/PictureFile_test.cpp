#include "host/files/PictureFile.h"

#include <array>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "host/files/OutputFile.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/RawPictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

constexpr std::int32_t kWidth = 37;
constexpr std::int32_t kHeight = 23;

struct FormatCase {
  const char* extension;
  bool lossless;
  bool alpha;
  bool exact16;  // 16-bit pictures come back to the last bit
};

class PictureFileFormats : public testing::TestWithParam<FormatCase> {
 protected:
  // Random components from `low` to `high`, which the format can hold.
  void RoundTrip(std::int32_t depth, std::int32_t low, std::int32_t high) {
    HostImage written;
    written.Reset(depth, 4, kWidth, kHeight);
    FillRandom(written, low, high, 11);
    const auto path = folder_.path() / ("picture." + std::string(GetParam().extension));
    PictureWriter().Write(path, written, nullptr, false);
    HostImage read;
    const PictureInfo info = PictureReader().ReadColour(path, depth, read).info;
    EXPECT_EQ(info.channels, GetParam().alpha ? 4 : 3);
    if (!GetParam().alpha) {
      for (std::size_t i = 3; i < ComponentCount(written); i += 4)
        SetComponent(written, i, depth == 8 ? 255 : 16384);
    }
    ASSERT_EQ(read.Width(), kWidth);
    ASSERT_EQ(read.Height(), kHeight);
    if (GetParam().lossless) {
      EXPECT_EQ(Components(read), Components(written));
    }
  }

  ScratchFolder folder_;
};

TEST_P(PictureFileFormats, EightBitsComeBackAsTheyWere) {
  RoundTrip(8, 0, 255);
}

TEST_P(PictureFileFormats, SixteenBitsComeBackAsTheyWere) {
  if (GetParam().exact16) {
    const bool isExr = std::string(GetParam().extension) == "exr";
    RoundTrip(16, isExr ? -32768 : 0, isExr ? 32767 : 16384);
  } else {
    HostImage image;
    image.Reset(16, 4, kWidth, kHeight);
    image.Clear();
    const auto path = folder_.path() / ("picture." + std::string(GetParam().extension));
    PictureWriter().Write(path, image, nullptr, false);
    EXPECT_NE(ReadPictureInfo(path).samples, SampleKind::Unsigned16);
  }
}

// The files are top-down, the picture's row 0 is the bottom.
TEST_P(PictureFileFormats, TheFirstRowOfTheFileIsTheTop) {
  HostImage image;
  image.Reset(8, 4, 16, 16);
  image.Clear();
  for (std::size_t i = 0; i < 16 * 8 * 4; ++i)
    SetComponent(image, i, 255);
  const auto path = folder_.path() / ("picture." + std::string(GetParam().extension));
  PictureWriter().Write(path, image, nullptr, false);
  auto file = OIIO::ImageInput::open(path.string());
  ASSERT_TRUE(file);
  const int channels = file->spec().nchannels;
  std::vector<float> samples(static_cast<std::size_t>(16 * 16 * channels));
  ASSERT_TRUE(file->read_image(0, 0, 0, channels, OIIO::TypeDesc::FLOAT, samples.data()));
  EXPECT_LT(samples.front(), 0.1f);
  EXPECT_GT(samples.back(), 0.9f);
}

// Truncated files and files of other content fail with one line.
TEST_P(PictureFileFormats, BrokenFilesAreRefused) {
  HostImage image;
  image.Reset(8, 4, 64, 48);
  FillRandom(image, 0, 255, 3);
  const std::string extension = GetParam().extension;
  const auto whole = folder_.path() / ("whole." + extension);
  PictureWriter().Write(whole, image, nullptr, false);
  const std::string bytes = Bytes(whole);
  for (const std::size_t keep : {std::size_t{1}, std::size_t{30}, bytes.size() / 2}) {
    const auto cut = folder_.Write("cut." + extension, bytes.substr(0, keep));
    HostImage read;
    const auto failure = CaughtFailure([&] { PictureReader().ReadColour(cut, 8, read); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->Code(), ExitCode::CannotRead);
    EXPECT_EQ(std::string(failure->what()).rfind(cut.string() + ": cannot read: ", 0), 0u) << failure->what();
  }
  const auto text = folder_.Write("text." + extension, std::string(2000, 'x') + "\nthis is no picture\n");
  EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo(text); })->Code(), ExitCode::CannotRead);
  const auto empty = folder_.Write("empty." + extension, "");
  EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo(empty); })->what(),
            empty.string() + ": cannot read: the file is empty, a picture was expected");
}

INSTANTIATE_TEST_SUITE_P(Formats, PictureFileFormats,
                         testing::Values(FormatCase{"png", true, true, true}, FormatCase{"jpg", false, false, false},
                                         FormatCase{"tif", true, true, true}, FormatCase{"exr", true, true, true},
                                         FormatCase{"dpx", true, true, true}, FormatCase{"webp", false, false, false},
                                         FormatCase{"tga", true, true, false}, FormatCase{"bmp", true, true, false},
                                         FormatCase{"ppm", true, false, false}, FormatCase{"sgi", true, true, true},
                                         FormatCase{"hdr", false, false, false}),
                         [](const auto& format) { return std::string(format.param.extension); });

class PictureFile : public testing::Test {
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

TEST_F(PictureFile, GreyIsSpreadAndAlphaIsFull) {
  const std::vector<std::uint8_t> grey = {10, 20};
  EXPECT_EQ(Components(ReadRaw("g.png", 2, 1, {"Y"}, grey, 8)),
            (std::vector<std::int32_t>{10, 10, 10, 255, 20, 20, 20, 255}));
  EXPECT_EQ(Components(ReadRaw("g16.png", 2, 1, {"Y"}, grey, 16)),
            (std::vector<std::int32_t>{643, 643, 643, 16384, 1285, 1285, 1285, 16384}));
  const std::vector<std::uint8_t> greyAlpha = {10, 0, 20, 99};
  EXPECT_EQ(Components(ReadRaw("ga.png", 2, 1, {"Y", "A"}, greyAlpha, 8)),
            (std::vector<std::int32_t>{10, 10, 10, 0, 20, 20, 20, 99}));
}

TEST_F(PictureFile, ChannelsAreFoundByName) {
  const std::vector<float> samples = {0.1f, 1.0f, 0.5f, 0.25f, 0.75f};
  EXPECT_EQ(Components(ReadRaw("z.exr", 1, 1, {"Z", "R", "G", "B", "A"}, samples, 16)),
            (std::vector<std::int32_t>{16384, 8192, 4096, 12288}));
  const std::vector<float> depthOnly = {1.0f, 0.5f, 0.25f, 7.0f};
  EXPECT_EQ(Components(ReadRaw("rgbz.exr", 1, 1, {"R", "G", "B", "Z"}, depthOnly, 16)),
            (std::vector<std::int32_t>{16384, 8192, 4096, 16384}));
}

TEST_F(PictureFile, FloatsAreLimitedToTheRangeOfTheDepth) {
  const float infinity = std::numeric_limits<float>::infinity();
  const std::vector<float> samples = {3.0f, -infinity, std::nanf(""), 1.0f};
  EXPECT_EQ(Components(ReadRaw("f.exr", 1, 1, {"R", "G", "B", "A"}, samples, 16)),
            (std::vector<std::int32_t>{32767, -32768, 0, 16384}));
  EXPECT_EQ(Components(ReadRaw("f8.exr", 1, 1, {"R", "G", "B", "A"}, samples, 8)),
            (std::vector<std::int32_t>{255, 0, 0, 255}));
}

TEST_F(PictureFile, AMaskIsTheFirstChannelAsAnAmount) {
  const auto path = folder_.path() / "mask.png";
  WriteRaw(path, "png", OIIO::ImageSpec(2, 1, 3, OIIO::TypeDesc::UINT8),
           std::vector<std::uint8_t>{255, 1, 2, 51, 3, 4});
  PictureReader reader;
  reader.ReadMask(path, 8, image_);
  EXPECT_EQ(image_.Components(), 1);
  EXPECT_EQ(image_.Format(), MFIF_MASK_8);
  EXPECT_EQ(Components(image_), (std::vector<std::int32_t>{255, 51}));
  reader.ReadMask(path, 16, image_);
  EXPECT_EQ(image_.Format(), MFIF_MASK_16);
  EXPECT_EQ(Components(image_), (std::vector<std::int32_t>{32767, 6553}));
  const auto exr = folder_.path() / "mask.exr";
  WriteRaw(exr, "openexr", OIIO::ImageSpec(3, 1, 1, OIIO::TypeDesc::FLOAT), std::vector<float>{1.0f, 0.5f, -1.0f});
  reader.ReadMask(exr, 16, image_);
  EXPECT_EQ(Components(image_), (std::vector<std::int32_t>{32767, 16384, -32767}));
}

TEST_F(PictureFile, ThePictureInsideCountsNotItsName) {
  HostImage picture;
  picture.Reset(8, 4, 5, 4);
  FillRandom(picture, 0, 255, 5);
  const auto png = folder_.path() / "true.png";
  PictureWriter().Write(png, picture, nullptr, false);
  std::filesystem::copy_file(png, folder_.path() / "false.jpg");
  EXPECT_EQ(PictureReader().ReadColour(folder_.path() / "false.jpg", 8, image_).info.format, "png");
  EXPECT_EQ(Components(image_), Components(picture));
}

TEST_F(PictureFile, OtherThingsThanPicturesAreNamed) {
  const auto missing = folder_.path() / "missing.png";
  EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo(missing); })->what(), missing.string() + ": cannot read: no such file");
  EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo(folder_.path()); })->what(),
            folder_.path().string() + ": cannot read: it is a folder, a picture file was expected");
  EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo("/dev/null"); })->what(),
            std::string("/dev/null: cannot read: not a regular file; - reads a picture from a pipe"));
}

// The library's readers would take it for a damaged file.
TEST_F(PictureFile, TooManyOpenFilesAreNamed) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitizer opens pipes to check addresses";
#endif
  image_.Reset(8, 4, 5, 4);
  image_.Clear();
  const auto path = folder_.path() / "whole.png";
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
}

// Headers of sizes out of range, without the pixels.
TEST_F(PictureFile, PicturesWithoutPixelsOrWithTooManyAreRefused) {
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

TEST_F(PictureFile, TheNaturalDepthIsThatOfTheSamples) {
  const auto info = [&](const char* name, const char* format, const OIIO::TypeDesc& type) {
    WriteRaw(folder_.path() / name, format, OIIO::ImageSpec(1, 1, 3, type), std::vector<float>{0.0f, 0.5f, 1.0f});
    return ReadPictureInfo(folder_.path() / name).NaturalDepth();
  };
  EXPECT_EQ(info("8.png", "png", OIIO::TypeDesc::UINT8), 8);
  EXPECT_EQ(info("16.png", "png", OIIO::TypeDesc::UINT16), 16);
  EXPECT_EQ(info("h.exr", "openexr", OIIO::TypeDesc::HALF), 16);
  EXPECT_EQ(info("10.dpx", "dpx", OIIO::TypeDesc::UINT16), 16);
}

TEST_F(PictureFile, ReadingCanBeStopped) {
  HostImage picture;
  picture.Reset(8, 4, 64, 64);
  picture.Clear();
  const auto path = folder_.path() / "p.png";
  PictureWriter().Write(path, picture, nullptr, false);
  PictureReader stopped([] { return true; });
  EXPECT_THROW(stopped.ReadColour(path, 8, image_), FileInterrupted);
}

// Nothing is written to the standard error stream: the failure has the message.
TEST_F(PictureFile, LibrariesKeepQuiet) {
  HostImage picture;
  picture.Reset(8, 4, 200, 200);
  FillRandom(picture, 0, 255, 9);
  const auto whole = folder_.path() / "whole.png";
  PictureWriter().Write(whole, picture, nullptr, false);
  const std::string bytes = Bytes(whole);
  const auto cut = folder_.Write("cut.png", bytes.substr(0, bytes.size() / 2));
  testing::internal::CaptureStderr();
  CaughtFailure([&] { PictureReader().ReadColour(cut, 8, image_); });
  std::fputs("still here", stderr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "still here");
}

}  // namespace
}  // namespace vblur::host
