// Files that are no pictures, damaged ones and large ones, read with the imaging component.
#include <cstring>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "host/base/Failure.h"
#include "host/base/Utf8.h"
#include "host/files/OutputFile.h"
#include "host/files/PictureFile.h"
#include "host/formats/FileBytes.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TiffBytes.h"

namespace vblur::host {
namespace {

class PictureReading : public testing::Test {
 protected:
  static std::filesystem::path Known(const char* name) { return std::filesystem::path(VBLUR_PICTURES_FOLDER) / name; }

  // Of a file of these bytes.
  std::optional<Failure> Refusal(const std::string& name, const std::string& bytes, const ReadChoice& choice = {}) {
    const auto path = folder_.Write(name, bytes);
    return CaughtFailure([&] { PictureReader().ReadColour(path, 8, image_, choice); });
  }

  ScratchFolder folder_;
  HostImage image_;
};

TEST_F(PictureReading, OtherFilesAreRefusedWithTheFormatsOfTheSystem) {
  const auto failure = Refusal("x.exr", std::string("\x76\x2f\x31\x01", 4) + std::string(100, 'x'));
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->Code(), ExitCode::CannotRead);
  EXPECT_NE(std::string(failure->what()).find("expected one of png, tif, jpg, bmp"), std::string::npos)
      << failure->what();
}

TEST_F(PictureReading, FilesThatAreCutShortAreRefused) {
  for (const char* name :
       {"rgb8.png", "rgba16.png", "rgb8-packbits.tif", "rgba16-zip.tif", "rgb.jpg", "rgb.bmp", "grey.bmp"}) {
    const std::string whole = Bytes(Known(name));
    for (std::size_t length = 1; length + 20 < whole.size(); length += 1 + whole.size() / 40) {
      const auto failure = Refusal(name, whole.substr(0, length));
      ASSERT_TRUE(failure) << name << " " << length;
      EXPECT_EQ(failure->Code(), ExitCode::CannotRead);
    }
  }
}

// Some changes leave a picture: nothing but a failure or a picture may come of any.
TEST_F(PictureReading, DamagedFilesAreRefusedOrRead) {
  for (const char* name :
       {"rgb8.png", "palette.png", "rgb16-lzw.tif", "tiled8.tif", "rgb.jpg", "palette4.bmp", "rgba.bmp"}) {
    const std::string whole = Bytes(Known(name));
    for (std::size_t at = 0; at < whole.size(); at += 1 + whole.size() / 150) {
      std::string damaged = whole;
      damaged[at] = static_cast<char>(damaged[at] ^ 0x5a);
      ReadChoice choice;
      choice.mostPixels = 1'000'000;
      const auto path = folder_.Write(name, damaged);
      try {
        PictureReader().ReadColour(path, 8, image_, choice);
      } catch (const Failure& failure) {
        EXPECT_EQ(failure.Code(), ExitCode::CannotRead);
      }
    }
  }
}

TEST_F(PictureReading, LargePicturesAreRefusedByTheirHeader) {
  const std::string whole = Bytes(Known("rgb8.png"));
  std::string large = whole;
  large.replace(16, 8, std::string("\x00\x01\x00\x00\x00\x01\x00\x00", 8));
  const auto failure = Refusal("large.png", large);
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->Kind(), FailureKind::TooManyPixels);
  ReadChoice few;
  few.mostPixels = 200;
  for (const char* name : {"rgb8.png", "rgb8-packbits.tif", "rgb.jpg", "rgb.bmp"}) {
    const auto refused = CaughtFailure([&] { PictureReader().ReadColour(Known(name), 8, image_, few); });
    ASSERT_TRUE(refused) << name;
    EXPECT_EQ(std::string(refused->what()).substr(std::string(refused->what()).find(": ")),
              ": cannot read: 17 x 13 pixels, 221 in all, expected at most 200");
  }
}

TEST_F(PictureReading, AMaskIsTheChannelThatIsAskedFor) {
  ReadChoice choice;
  choice.channel = "A";
  PictureReader().ReadColour(Known("rgba8.png"), 8, image_);
  HostImage mask;
  PictureReader().ReadMask(Known("rgba8.png"), 8, mask, choice);
  for (std::size_t i = 0; i < ComponentCount(mask); ++i)
    ASSERT_EQ(Component(mask, i), Component(image_, 4 * i + 3));
  choice.channel = "G";
  PictureReader().ReadMask(Known("rgba8.png"), 8, mask, choice);
  for (std::size_t i = 0; i < ComponentCount(mask); ++i)
    ASSERT_EQ(Component(mask, i), Component(image_, 4 * i + 1));
  choice.channel = "depth";
  EXPECT_TRUE(CaughtFailure([&] { PictureReader().ReadMask(Known("rgba8.png"), 8, mask, choice); }));
}

// The pictures that fuzzers start from: of many formats, and damaged in ways that once did harm.
TEST_F(PictureReading, FilesOfEveryKindAreReadOrRefused) {
  const std::set<std::string> read{"float-zip.tif", "grey.bmp", "grey.jpg", "grey8.png",  "palette.png",  "rgb.bmp",
                                   "rgb.jpg",       "rgb8.png", "rgb8.tif", "rgba16.png", "two-pages.tif"};
  for (const char* folder : {"accepted", "refused"}) {
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(VBLUR_CORPUS_FOLDER) / folder)) {
      const std::string name = entry.path().filename().string();
      bool isRead = true;
      try {
        PictureReader().ReadColour(entry.path(), 8, image_);
      } catch (const Failure& failure) {
        isRead = false;
        EXPECT_EQ(failure.Code(), ExitCode::CannotRead) << name;
      }
      EXPECT_EQ(isRead, read.contains(name)) << name;
    }
  }
}

// Codecs leave such samples of 16 bits as they are stored, or turn them: nobody sees which.
TEST_F(PictureReading, TheLeastValueMayBeWhite) {
  const std::string samples("\0\0\x34\x12\xff\xff", 6);
  const std::string turned("\xff\xff\xcb\xed\0\0", 6);
  const auto read = [&](TiffBytes&& file) {
    ReadChoice choice;
    choice.keepsSamples = true;
    return *PictureReader().ReadColour(folder_.Write("w.tif", file.File()), 16, image_, choice).samples;
  };
  const auto whiteLeast = read(std::move(TiffBytes(3, 1, 16, 1, samples).Short(262, {0})));
  EXPECT_EQ(whiteLeast, read(TiffBytes(3, 1, 16, 1, turned)));
  EXPECT_NE(whiteLeast, read(TiffBytes(3, 1, 16, 1, samples)));
  EXPECT_EQ(whiteLeast,
            read(std::move(TiffBytes(3, 1, 16, 1, std::string("\0\0\x12\x34\xff\xff", 6), true).Short(262, {0}))));
}

// Some codecs swap the bytes of files of the other order once too often.
TEST_F(PictureReading, SamplesAreThoseOfTheFileInEitherOrderOfBytes) {
  const std::string little("\x34\x12\x01\0\xfe\xff\0\x80\x05\0\xff\0\x07\0\0\x10", 16);
  std::string big = little;
  for (std::size_t at = 0; at < big.size(); at += 2)
    std::swap(big[at], big[at + 1]);
  for (const std::uint32_t channels : {1u, 3u, 4u}) {
    ReadChoice choice;
    choice.keepsSamples = true;
    const std::uint32_t width = 8 / channels;
    const auto pixels = [&](const std::string& samples) { return samples.substr(0, width * channels * 2); };
    TiffBytes file(width, 1, 16, channels, pixels(big), true);
    if (channels == 4) file.Short(338, {2});
    const auto path = folder_.Write("big.tif", file.File());
    const ReadPicture read = PictureReader().ReadColour(path, 16, image_, choice);
    ASSERT_EQ(read.samples->size(), pixels(little).size());
    EXPECT_EQ(std::memcmp(read.samples->data(), pixels(little).data(), read.samples->size()), 0) << channels;
  }
}

TEST_F(PictureReading, WhatTheCodecDoesNotReadIsRefusedInWords) {
  const auto refusal = [&](const TiffBytes& file) {
    const auto failure = Refusal("r.tif", file.File());
    return failure ? std::string(failure->what()) : "read";
  };
  const std::string name = Utf8Of(folder_.path() / "r.tif") + ": cannot read: ";
  for (const std::uint32_t bits : {8u, 16u}) {
    const std::string planar = refusal(TiffBytes(2, 2, bits, 3, std::string(3 * bits / 2, 'x')).Planes(3));
    EXPECT_TRUE(planar == "read" || planar == name +
                                                  "the system's codec does not read samples that are stored plane by "
                                                  "plane, expected them pixel by pixel")
        << planar;
    const std::string five = refusal(TiffBytes(2, 2, bits, 5, std::string(5 * bits / 2, 'x')).Short(338, {0, 0}));
    EXPECT_TRUE(five == "read" || five == name + "the system's codec does not read 5 channels, expected at most 4")
        << five;
  }
  EXPECT_EQ(refusal(TiffBytes(2, 2, 32, 1, std::string(16, 'x')).Short(262, {0}).Short(339, {3})),
            name + "grey of 32 bits whose least value is white is not read here, expected the least to be black");
  for (const int bits : {8, 16}) {
    const auto pixels = [&](int channels) { return std::string(static_cast<std::size_t>(channels * bits / 2), 'x'); };
    EXPECT_EQ(refusal(TiffBytes(2, 2, bits, 3, pixels(3)).Short(339, {2, 2, 2})),
              name + "signed samples are not read here, expected unsigned ones or floats");
    const std::string unknown = " is not said to be alpha and is not read here, expected alpha or one channel less";
    EXPECT_EQ(refusal(TiffBytes(2, 2, bits, 4, pixels(4)).Short(338, {0})), name + "channel 4" + unknown);
    EXPECT_EQ(refusal(TiffBytes(2, 2, bits, 4, pixels(4))), name + "channel 4" + unknown);
    EXPECT_EQ(refusal(TiffBytes(2, 2, bits, 2, pixels(2)).Short(338, {0})), name + "channel 2" + unknown);
  }
}

// The codec goes by the bits alone.
TEST_F(PictureReading, SamplesOfFormatsThatTheCodecMistakesAreRefused) {
  const auto refusal = [&](std::uint32_t bits, std::uint32_t format) {
    const auto failure = Refusal(
        "s.tif", TiffBytes(2, 2, bits, 3, std::string(3 * bits / 2, '\1')).Short(339, {format, format, format}).File());
    return failure ? std::string(failure->what()).substr((Utf8Of(folder_.path() / "s.tif") + ": cannot read: ").size())
                   : "read";
  };
  EXPECT_EQ(refusal(16, 3), "floats of 16 bits are not read here, expected 32");
  EXPECT_EQ(refusal(32, 1), "whole numbers of 32 bits are not read here, expected 8 or 16");
  for (const std::uint32_t format : {0u, 4u, 5u})
    EXPECT_EQ(refusal(16, format), "samples of an unknown kind are not read here, expected unsigned ones or floats");
}

TEST_F(PictureReading, InksOf16BitsAreRefusedByTheirName) {
  const auto inks = [](std::uint32_t bits) {
    return TiffBytes(2, 1, bits, 4, std::string(bits, '\1')).Short(262, {5}).File();
  };
  const auto failure = Refusal("i.tif", inks(16));
  ASSERT_TRUE(failure);
  EXPECT_EQ(std::string(failure->what()),
            Utf8Of(folder_.path() / "i.tif") + ": cannot read: inks of 16 bits are not read here, expected 8");
  EXPECT_TRUE(PictureReader().ReadColour(folder_.Write("i.tif", inks(8)), 8, image_).info.hasInks);
}

// Other readers stop at them, or leave the transparency out.
TEST_F(PictureReading, PngFilesWithADamagedChunkOfThePixelsAreRefused) {
  for (const auto& [file, chunk] :
       {std::pair{"rgb8.png", "IHDR"}, {"palette.png", "PLTE"}, {"palette-alpha.png", "tRNS"}}) {
    std::string png = Bytes(Known(file));
    const std::size_t at = png.find(chunk);
    const std::size_t sum = at + 4 + static_cast<std::size_t>(Big16(png, at - 2));
    png[sum] = static_cast<char>(png[sum] ^ 1);
    const auto failure = Refusal("d.png", png);
    ASSERT_TRUE(failure) << chunk;
    EXPECT_EQ(std::string(failure->what()),
              Utf8Of(folder_.path() / "d.png") +
                  ": cannot read: the picture is damaged (a wrong checksum in its chunk " + chunk + ")");
  }
}

TEST_F(PictureReading, WhatCodecsDifferInIsRefusedInWords) {
  const auto refusal = [&](const std::string& name, const std::string& bytes) {
    const auto failure = Refusal(name, bytes);
    const std::string begin = Utf8Of(folder_.path() / name) + ": cannot read: ";
    if (!failure) return std::string("read");
    const std::string what = failure->what();
    EXPECT_TRUE(what.starts_with(begin)) << what;
    return what.substr(begin.size());
  };
  const auto expect = [](const std::string& found, const std::string& words) {
    EXPECT_TRUE(found == "read" || found == "the system's codec does not read " + words) << found;
  };
  expect(refusal("a.tif", TiffBytes(2, 1, 16, 2, "abcdefgh").Short(338, {2}).File()),
         "grey of 16 bits with alpha, expected it without, or colours");
  // No packed pixels: nobody reads these.
  EXPECT_EQ(refusal("j.tif", TiffBytes(2, 1, 8, 3, "abcdef").Short(259, {7}).File()),
            "the system's codec does not read the compression jpeg, expected none, lzw, zip or packbits");
  std::string bmp = Bytes(Known("rgb.bmp"));
  bmp.replace(28, 6, std::string("\x10\0\x03\0\0\0", 6));
  EXPECT_EQ(refusal("m.bmp", bmp),
            "the system's codec does not read these 16 bits a pixel, expected 5 bits a channel, "
            "or 6 of green");
  std::string png = Bytes(Known("rgb8.png"));
  const std::size_t pixels = png.find("IDAT") + 20;
  png[pixels] = static_cast<char>(png[pixels] ^ 0x5a);
  const std::string damaged = refusal("d.png", png);
  EXPECT_EQ(damaged, "the picture is damaged (a wrong checksum in its chunk IDAT)");
}

TEST_F(PictureReading, FurtherPicturesAreTold) {
  const auto path = std::filesystem::path(VBLUR_CORPUS_FOLDER) / "accepted" / "two-pages.tif";
  const ReadPicture read = PictureReader().ReadColour(path, 8, image_);
  EXPECT_EQ(read.info.pictures, 2);
  ASSERT_EQ(read.losses.size(), 1u);
  EXPECT_NE(read.losses[0].find("only the first of 2 pictures is read"), std::string::npos);
}

}  // namespace
}  // namespace vblur::host
