#include "host/files/PictureFile.h"

#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/HeldFormats.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/PlainFiles.h"
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

std::vector<FormatCase> Formats() {
  // Few programs take the fourth byte of a pixel as alpha: not every system writes it.
  const bool bmpAlpha = OutputFormatOf("a.bmp").layouts.Has(PixelLayout::Rgba);
  std::vector<FormatCase> all{{"png", true, true, true},  {"jpg", false, false, false},   {"tif", true, true, true},
                              {"exr", true, true, true},  {"dpx", true, true, true},      {"webp", false, false, false},
                              {"tga", true, true, false}, {"bmp", true, bmpAlpha, false}, {"ppm", true, false, false},
                              {"sgi", true, true, true},  {"hdr", false, false, false}};
  std::erase_if(all, [](const FormatCase& format) { return !IsHeld(format.extension); });
  return all;
}

INSTANTIATE_TEST_SUITE_P(Formats, PictureFileFormats, testing::ValuesIn(Formats()),
                         [](const auto& format) { return std::string(format.param.extension); });

class PictureFile : public testing::Test {
 protected:
  ScratchFolder folder_;
  HostImage image_;
};

TEST_F(PictureFile, GreyIsSpreadAndAlphaIsFull) {
  const auto read = [&](std::uint32_t channels, const std::vector<std::uint8_t>& samples, std::int32_t depth) {
    const auto path = folder_.path() / "grey.png";
    WritePng(path, PlainPicture<std::uint8_t>{2, 1, channels, samples});
    PictureReader().ReadColour(path, depth, image_);
    return Components(image_);
  };
  EXPECT_EQ(read(1, {10, 20}, 8), (std::vector<std::int32_t>{10, 10, 10, 255, 20, 20, 20, 255}));
  EXPECT_EQ(read(1, {10, 20}, 16), (std::vector<std::int32_t>{643, 643, 643, 16384, 1285, 1285, 1285, 16384}));
  EXPECT_EQ(read(2, {10, 0, 20, 99}, 8), (std::vector<std::int32_t>{10, 10, 10, 0, 20, 20, 20, 99}));
}

TEST_F(PictureFile, AMaskIsTheFirstChannelAsAnAmount) {
  const auto path = folder_.path() / "mask.png";
  WritePng(path, PlainPicture<std::uint8_t>{2, 1, 3, {255, 1, 2, 51, 3, 4}});
  PictureReader reader;
  reader.ReadMask(path, 8, image_);
  EXPECT_EQ(image_.Components(), 1);
  EXPECT_EQ(image_.Format(), MFIF_MASK_8);
  EXPECT_EQ(Components(image_), (std::vector<std::int32_t>{255, 51}));
  reader.ReadMask(path, 16, image_);
  EXPECT_EQ(image_.Format(), MFIF_MASK_16);
  EXPECT_EQ(Components(image_), (std::vector<std::int32_t>{32767, 6553}));
}

TEST_F(PictureFile, TheNaturalDepthIsThatOfTheSamples) {
  const auto path = folder_.path() / "depth.png";
  WritePng(path, FlatPicture<std::uint8_t>(1, 1, 3, 7));
  EXPECT_EQ(ReadPictureInfo(path).NaturalDepth(), 8);
  WritePng(path, FlatPicture<std::uint16_t>(1, 1, 3, 7));
  EXPECT_EQ(ReadPictureInfo(path).NaturalDepth(), 16);
}

TEST_F(PictureFile, OtherThingsThanPicturesAreNamed) {
  const auto missing = folder_.path() / "missing.png";
  EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo(missing); })->what(), missing.string() + ": cannot read: no such file");
  EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo(folder_.path()); })->what(),
            folder_.path().string() + ": cannot read: it is a folder, a picture file was expected");
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

// A BMP file of one row, of pixels of 16 bits; without masks 5 bits are of each colour.
std::string PackedBmp(const std::vector<std::uint32_t>& pixels, const std::vector<std::uint32_t>& masks) {
  const auto number = [](std::size_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i)
      text.push_back(static_cast<char>(value >> 8 * i & 0xff));
    return text;
  };
  const std::size_t begin = 54 + 4 * masks.size();
  const std::size_t bytes = (2 * pixels.size() + 3) / 4 * 4;
  std::string file = "BM" + number(begin + bytes, 4) + number(0, 4) + number(begin, 4);
  file += number(40, 4) + number(pixels.size(), 4) + number(1, 4) + number(1, 2) + number(16, 2);
  file += number(masks.empty() ? 0 : 3, 4) + number(bytes, 4) + std::string(16, '\0');
  for (const std::uint32_t mask : masks)
    file += number(mask, 4);
  for (const std::uint32_t pixel : pixels)
    file += number(pixel, 2);
  return file + std::string(bytes - 2 * pixels.size(), '\0');
}

// The upper bits stand again below them, so that all ones are full.
TEST_F(PictureFile, PackedBmpFilesAreReadWithAllTheirBits) {
  for (const std::uint32_t greenBits : {5u, 6u}) {
    const std::uint32_t red = 5 + greenBits;
    std::vector<std::uint32_t> pixels;
    std::vector<std::int32_t> expected;
    for (std::uint32_t value = 0; value < 1u << greenBits; ++value) {
      const std::uint32_t five = value % 32;
      pixels.push_back(five << red | value << 5 | (31 - five));
      const auto wide = [](std::uint32_t part, std::uint32_t bits) {
        return static_cast<std::int32_t>(part << (8 - bits) | part >> (2 * bits - 8));
      };
      expected.insert(expected.end(), {wide(five, 5), wide(value, greenBits), wide(31 - five, 5), 255});
    }
    std::vector<std::uint32_t> masks;
    if (greenBits == 6) masks = {0xf800, 0x7e0, 0x1f};
    const ReadPicture read =
        PictureReader().ReadColour(folder_.Write("packed.bmp", PackedBmp(pixels, masks)), 8, image_);
    EXPECT_EQ(Components(image_), expected);
    EXPECT_EQ(NameOf(read.info.stored), "uint5");
    EXPECT_FALSE(read.info.HasAlpha());
  }
}

}  // namespace
}  // namespace vblur::host
