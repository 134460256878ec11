// TIFF files whose least value is white: what comes out of them is what comes out of the same picture stored the usual
// way, with any system's picture library.
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/PlainFiles.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TiffBytes.h"

namespace vblur::host {
namespace {

constexpr std::uint16_t kMeaning = 262;
constexpr std::uint16_t kExtraSamples = 338;

#ifdef _WIN32
constexpr bool kMayBeRefused = true;
#else
constexpr bool kMayBeRefused = false;
#endif

class WhiteLeastGrey : public testing::Test {
 protected:
  static TiffBytes WhiteLeast(TiffBytes file) { return std::move(file.Short(kMeaning, {0})); }

  template <typename Sample>
  std::vector<Sample> SamplesOf(const TiffBytes& file) const {
    return StoredSamples<Sample>(folder_.Write("grey.tif", file.File()));
  }

  template <typename Sample>
  void ExpectTurned(std::uint32_t bits, const std::string& samples, const std::string& turned, bool isBig = false) {
    const auto width = static_cast<std::uint32_t>(samples.size()) * 8 / bits;
    const auto read = SamplesOf<Sample>(WhiteLeast(TiffBytes(width, 1, bits, 1, samples, isBig)));
    EXPECT_EQ(read, SamplesOf<Sample>(TiffBytes(width, 1, bits, 1, turned, isBig))) << bits << isBig;
    EXPECT_NE(read, SamplesOf<Sample>(TiffBytes(width, 1, bits, 1, samples, isBig))) << bits << isBig;
  }

  ScratchFolder folder_;
};

TEST_F(WhiteLeastGrey, IsReadAtAnyDepth) {
  ExpectTurned<std::uint8_t>(1, "\x35", "\xca");
  ExpectTurned<std::uint8_t>(4, "\x01\x9f", "\xfe\x60");
  ExpectTurned<std::uint8_t>(8, std::string("\0\x34\xff", 3), std::string("\xff\xcb\0", 3));
  ExpectTurned<std::uint16_t>(16, std::string("\0\0\x34\x12\xff\xff", 6), std::string("\xff\xff\xcb\xed\0\0", 6));
  ExpectTurned<std::uint16_t>(16, std::string("\0\0\x12\x34\xff\xff", 6), std::string("\xff\xff\xed\xcb\0\0", 6), true);
}

// Codecs that do not read grey with alpha are refused the file; none gives other samples.
TEST_F(WhiteLeastGrey, AlphaStaysAsItIs) {
  const auto expect = [&]<typename Sample>(const std::string& samples, const std::vector<Sample>& expected) {
    const auto bits = static_cast<std::uint32_t>(8 * sizeof(Sample));
    TiffBytes file = WhiteLeast(TiffBytes(2, 1, bits, 2, samples));
    file.Short(kExtraSamples, {2});
    try {
      EXPECT_EQ(SamplesOf<Sample>(file), expected);
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.Code(), ExitCode::CannotRead);
      EXPECT_TRUE(kMayBeRefused) << failure.what();
    }
  };
  expect(std::string("\x10\x20\xff\0", 4), std::vector<std::uint8_t>{0xef, 0x20, 0, 0});
  expect(std::string("\x34\x12\x01\0\xff\xff\0\x80", 8), std::vector<std::uint16_t>{0xedcb, 1, 0, 0x8000});
}

TEST_F(WhiteLeastGrey, FloatsHaveNoWhite) {
  TiffBytes file = WhiteLeast(TiffBytes(1, 1, 32, 1, std::string("\0\0\0\x3f", 4)));
  file.Short(339, {3});
  const auto path = folder_.Write("float.tif", file.File());
  const auto failure = CaughtFailure([&] { ReadPictureInfo(path); });
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->Code(), ExitCode::CannotRead);
  EXPECT_NE(std::string(failure->what()).find("whose least value is white is not read"), std::string::npos)
      << failure->what();
}

TEST_F(WhiteLeastGrey, AFileInItsOwnPlaceShowsTheSame) {
  for (const std::uint32_t bits : {8u, 16u}) {
    const std::string samples("\x10\x32\x54\x76\x98\xba\xdc\xfe", 8);
    const auto path = folder_.Write("own.tif", WhiteLeast(TiffBytes(64 / bits, 1, bits, 1, samples)).File());
    HostImage before;
    HostImage after;
    ReadChoice choice;
    choice.keepsSamples = true;
    const ReadPicture read = PictureReader().ReadColour(path, 16, before, choice);
    OutputOptions options;
    options.overwrite = true;
    // No pixel of it was rendered.
    options.part = RenderedPart{{0, 0, 0, 0}, read.samples};
    PictureWriter().WriteBeside(path, before, read.metadata.get(), options).Commit();
    PictureReader().ReadColour(path, 16, after);
    EXPECT_EQ(Components(after), Components(before)) << bits;
  }
}

}  // namespace
}  // namespace vblur::host
