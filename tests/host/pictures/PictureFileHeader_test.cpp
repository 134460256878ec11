#include "host/formats/PictureFileHeader.h"

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/files/PictureFile.h"
#include "host/files/PictureReport.h"
#include "host/formats/PngHead.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/PlainFiles.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TiffBytes.h"

namespace vblur::host {
namespace {

class PictureFileHeader : public testing::Test {
 protected:
  ScratchFolder folder_;
};

// Their readers decode as they open: the size is refused before.
TEST_F(PictureFileHeader, BombsAreMetByTheirHeaders) {
  using namespace std::string_literals;
  const auto expect = [&](const std::string& name, const std::string& bytes, const std::string& size) {
    const auto path = folder_.Write(name, bytes);
    EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo(path); })->what(),
              path.string() + ": cannot read: " + size + " in all, expected at most 1000000000");
  };
  expect("b.gif", "GIF89a\xff\xff\xff\xff\x80\0\0"s + std::string(20, '\0'), "65535 x 65535 pixels, 4294836225");
  // Its reader takes any version for one that it knows.
  expect("c.gif", "GIF???\xff\xff\xff\xff\x80\0\0"s + std::string(20, '\0'), "65535 x 65535 pixels, 4294836225");
  const std::string siz = "\xff\x4f\xff\x51\0\x2f\0\0\0\x01\0\0\0\0\x80\0"s + std::string(40, '\0');
  expect("b.j2c", siz, "65536 x 32768 pixels, 2147483648");
  expect("b.jp2", "\0\0\0\x0cjP  \r\n\x87\n"s + siz, "65536 x 32768 pixels, 2147483648");
  expect("b.heic",
         "\0\0\0\x18"
         "ftypheic\0\0\0\0"s +
             "\0\0\0\x14ispe\0\0\0\0\0\x01\0\0\0\0\x80\0"s + std::string(40, '\0'),
         "65536 x 32768 pixels, 2147483648");
  const std::string huge = "\xff\x4f\xff\x51\0\x2f\0\0\xff\xff\xff\xff\xff\xff\xff\xfe"s + std::string(40, '\0');
  expect("c.j2c", huge, "4294967295 x 4294967294 pixels, 18446744060824649730");
  expect("b.webp", "RIFF\0\0\0\0WEBPVP8X\x0a\0\0\0\0\0\0\0\xff\xff\0\xff\x7f\0"s + std::string(20, '\0'),
         "65536 x 32768 pixels, 2147483648");
}

// They have fewer pixels than are allowed without a limit.
TEST_F(PictureFileHeader, ALimitMeetsPicturesThatAreDecodedWhenTheyAreOpened) {
  using namespace std::string_literals;
  ReadChoice choice;
  choice.mostPixels = 1000;
  const auto expect = [&](const std::string& picture, const std::string& size) {
    const auto path = folder_.Write("b.webp", "RIFF\0\0\0\0WEBP"s + picture + std::string(20, '\0'));
    EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo(path, choice); })->what(),
              path.string() + ": cannot read: " + size + " in all, expected at most 1000");
  };
  expect("VP8 \x78\0\0\0\x30\3\0\x9d\1\x2a\xff\x7f\x5f\x30"s, "16383 x 12383 pixels, 202870689");
  expect("VP8L\x78\0\0\0\x2f\xff\xff\xff\x0f"s, "16384 x 16384 pixels, 268435456");
}

TEST_F(PictureFileHeader, FramesOfAnAnimatedWebpAreCounted) {
  using namespace std::string_literals;
  const std::string frame = "ANMF\x03\0\0\0abc\0"s;
  EXPECT_EQ(FactsOfChunks(folder_.Write("a.webp", "RIFF\0\0\0\0WEBPVP8X\x02\0\0\0ab"s + frame + frame)).frames, 2);
  EXPECT_EQ(FactsOfChunks(folder_.Write("b.webp", "RIFF\0\0\0\0WEBPVP8L\x02\0\0\0ab"s)).frames, 1);
}

// Its reader gives none of it: no output keeps it.
TEST_F(PictureFileHeader, MetadataOfAWebpIsReportedAsLost) {
  HostImage image;
  image.Reset(8, 4, 16, 8);
  FillRandom(image, 0, 255, 1);
  const auto path = folder_.path() / "plain.webp";
  PictureWriter().Write(path, image, nullptr, true);
  const auto lossesTo = [](const std::filesystem::path& file, const char* name) {
    return ListOf(LossesOf(ReportPicture(file), OutputFormatOf(name), {}, 8));
  };
  EXPECT_EQ(lossesTo(path, "a.webp"), "");

  const auto little = [](std::size_t value, int bytes) {
    std::string text;
    for (; bytes > 0; --bytes, value >>= 8)
      text.push_back(static_cast<char>(value & 0xff));
    return text;
  };
  const auto chunk = [&](const std::string& name, const std::string& bytes) {
    return name + little(bytes.size(), 4) + bytes + std::string(bytes.size() % 2, '\0');
  };
  constexpr std::size_t kProfileExifXmp = 0x20 | 0x08 | 0x04;
  const std::string described = "WEBP" +
                                chunk("VP8X", little(kProfileExifXmp, 4) + little(16 - 1, 3) + little(8 - 1, 3)) +
                                chunk("ICCP", "profile") + Bytes(path).substr(12) + chunk("EXIF", "data") +
                                chunk("EXIF", "more") + chunk("XMP ", "<x/>");
  const auto rich = folder_.Write("rich.webp", "RIFF" + little(described.size(), 4) + described);
  EXPECT_EQ(lossesTo(rich, "a.webp"), "colour profile, Exif data, XMP data");
  EXPECT_EQ(lossesTo(rich, "a.png"), "colour profile, Exif data, XMP data");
  HostImage read;
  const auto metadata = PictureReader().ReadColour(rich, 8, read).metadata;
  EXPECT_EQ(Components(read).size(), Components(image).size());
  PictureWriter writer;
  const auto written = writer.WriteBeside(folder_.path() / "out.webp", read, metadata.get(), {});
  EXPECT_EQ(written.Notes(), std::vector<std::string>{"output: lost: colour profile, Exif data, XMP data"});
}

// The picture that readers without animation show is a frame, or one more.
TEST_F(PictureFileHeader, FramesOfAnAnimatedPngAreCounted) {
  using namespace std::string_literals;
  const auto count = [&](const std::string& chunks) {
    return FactsOfChunks(folder_.Write("a.png", "\x89PNG\r\n\x1a\n"s + chunks + "\0\0\0\x01IDATx"s + "crc!")).frames;
  };
  const std::string header = "\0\0\0\x02IHDRabcrc!"s;
  const std::string animation =
      "\0\0\0\x08"
      "acTL\0\0\0\x03\0\0\0\0crc!"s;
  const std::string frame =
      "\0\0\0\x04"
      "fcTLabcdcrc!"s;
  EXPECT_EQ(count(header), 1);
  EXPECT_EQ(count(header + animation + frame), 3);
  EXPECT_EQ(count(header + animation), 4);
  EXPECT_EQ(count(animation.substr(0, 9)), 1);
}

// The reader passes over it without a word.
TEST_F(PictureFileHeader, ADamagedProfileOfAPngIsTold) {
  using namespace std::string_literals;
  const auto plain = WritePng(folder_.path() / "plain.png", FlatPicture<std::uint8_t>(8, 4, 3, 51));
  const auto lost = [&](const std::string& chunk) {
    const auto path = folder_.Write("in.png", WithPngChunks(Bytes(plain), chunk));
    const std::string listed = ListOf(LossesOf(ReportPicture(path), OutputFormatOf("a.png"), {}, 8));
    HostImage image;
    const auto read = PictureReader().ReadColour(path, 8, image);
    PictureWriter writer;
    const auto written = writer.WriteBeside(folder_.path() / "out.png", image, read.metadata.get(), {});
    EXPECT_EQ(written.Notes(),
              listed.empty() ? std::vector<std::string>() : std::vector<std::string>{"output: lost: " + listed});
    return listed;
  };
  const std::string damaged = "damaged colour profile";
  EXPECT_EQ(lost(""), "");
  EXPECT_EQ(lost(PngChunk("iCCP", "icc\0\0not packed"s)), damaged);
  EXPECT_EQ(lost(PngChunk("iCCP", "icc")), damaged);
  EXPECT_EQ(lost(PngProfileChunk(std::string(200, 'x'))), damaged);
}

// The library takes their bytes in the other order.
TEST_F(PictureFileHeader, TiffSamplesOf24BitsAreRefused) {
  for (const bool isBig : {false, true}) {
    for (const std::uint32_t channels : {1u, 3u}) {
      const auto path =
          folder_.Write("in.tif", TiffBytes(2, 1, 24, channels, std::string(6 * channels, 'x'), isBig).File());
      EXPECT_EQ(
          CaughtFailure([&] { ReadPictureInfo(path); })->what(),
          path.string() + ": cannot read: samples of 24 bits are not read, expected whole numbers of 8, 16 or 32 bits");
    }
  }
}

}  // namespace
}  // namespace vblur::host
