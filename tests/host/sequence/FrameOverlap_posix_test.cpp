// Whole files, by stages that overlap and by stages one after the other.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "tests/host/sequence/SequenceRendererTest.h"
#include "tests/support/TestServer.h"
#include "tests/support/host/PlainFiles.h"
#include "tests/support/host/WindowedPictures.h"

namespace vblur::host {
namespace {

// The thread sanitizer cannot follow OpenEXR's own threads, which are for larger pictures.
#if defined(__SANITIZE_THREAD__)
constexpr std::int32_t kWidthOfExr = 60;
#else
constexpr std::int32_t kWidthOfExr = 500;
#endif

class FrameOverlapOfFiles : public SequenceRenderer {
 protected:
  FrameOverlapOfFiles() {
    job_.frames.reset();
    job_.properties.Set(PropertyOf(PropertyId::Blur).guid, 15.0);
  }

  // A picture of noise that has more bands than one.
  std::string MakeNoise(const std::string& name, std::int32_t depth = 8) {
    HostImage image;
    image.Reset(depth, 4, name.ends_with(".exr") ? kWidthOfExr : 500, 900);
    FillRandom(image, 0, depth == 8 ? 255 : 16384, 7);
    PictureWriter().Write(folder_.path() / name, image, nullptr, true);
    return name;
  }

  // With one thread the stages do not overlap.
  std::string Render(const std::string& from, const std::string& to, std::int32_t threads) {
    job_.input.emplace().file = from;
    job_.output.file = to;
    options_.threads = threads;
    seen_ = {};
    summary_ = RenderSequence(
        job_, [] { return MakeEffect(); }, options_, context_, seen_);
    return Exists(to) ? Bytes(folder_.path() / to) : "";
  }

  std::vector<std::string> Warnings() const {
    std::vector<std::string> texts;
    for (const auto& [frame, text] : seen_.warnings)
      texts.push_back(text);
    return texts;
  }

  // Both ways write the same file and warn of the same.
  void ExpectSame(const std::string& from, const std::string& extension) {
    options_.overwrite = true;
    const std::string apart = Render(from, "out." + extension, 1);
    EXPECT_EQ(summary_.done, 1) << from;
    const auto warnings = Warnings();
    const std::string overlapped = Render(from, "out." + extension, 4);
    EXPECT_EQ(summary_.done, 1) << from;
    EXPECT_FALSE(apart.empty());
    EXPECT_TRUE(overlapped == apart) << from << " to " << extension;
    EXPECT_EQ(Warnings(), warnings) << from << " to " << extension;
  }

  // Nothing but the input is in the folder.
  void ExpectNothingWritten() const {
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
      EXPECT_EQ(entry.path().stem(), "in") << entry.path();
  }

  RenderSummary summary_;
};

TEST_F(FrameOverlapOfFiles, AreTheSame) {
  for (const std::string extension : {"png", "jpg", "tif", "exr", "dpx"}) {
    const std::string from = MakeNoise("in." + extension);
    ExpectSame(from, extension);
    ExpectSame(from, extension == "png" ? "jpg" : "png");
  }
  ExpectSame(MakeNoise("in.png", 16), "tif");
}

TEST_F(FrameOverlapOfFiles, AreTheSameByTheFullLibrary) {
  ExpectSame(MakeNoise("in.png"), "webp");
  ExpectSame(MakeNoise("in.tga"), "png");
}

TEST_F(FrameOverlapOfFiles, AreTheSameOfGreyPictures) {
  PlainPicture<std::uint8_t> grey = FlatPicture<std::uint8_t>(300, 800, 1, 0);
  for (std::size_t i = 0; i < grey.samples.size(); ++i)
    grey.samples[i] = static_cast<std::uint8_t>(i * 7 % 256);
  WritePng(folder_.path() / "in.png", grey);
  ExpectSame("in.png", "png");
  // Of one channel the result is not grey, which its rows tell.
  const auto& channels = PropertyOf(PropertyId::Channels);
  const auto red = std::ranges::find(channels.entries, "Red") - channels.entries.begin();
  job_.properties.Set(channels.guid, static_cast<double>(red));
  ExpectSame("in.png", "png");
  EXPECT_FALSE(Warnings().empty());
}

// The output's data window grows by what the blur has put beside that of the input.
TEST_F(FrameOverlapOfFiles, AreTheSameOfPicturesWithWindows) {
  WriteWindowed(folder_.path() / "in.exr", {40, 300, 100, 200}, {0, 0, 180, 800}, {"R", "G", "B"});
  ExpectSame("in.exr", "exr");
  ExpectSame("in.exr", "png");
  const PictureInfo info = ReadPictureInfo(folder_.path() / "out.exr");
  EXPECT_EQ(info.data, (FileWindow{25, 285, 130, 230}));
}

TEST_F(FrameOverlapOfFiles, AreTheSameInLinearLight) {
  job_.depth = 32;
  job_.linear = true;
  for (const bool isAround : {false, true}) {
    job_.premultipliesAround = isAround;
    for (const std::string extension : {"png", "tif", "exr"}) {
      ExpectSame(MakeNoise("in." + extension), extension);
      ExpectSame("in." + extension, "tif");
    }
    // Its colours are amounts of light, which is told.
    EXPECT_EQ(Warnings().empty(), false);
  }
}

TEST_F(FrameOverlapOfFiles, AreTheSameOfAssociatedAlphaInLinearLight) {
  job_.depth = 32;
  job_.linear = true;
  // Stripes of black and white under an alpha of 1/5, and the same multiplied by it.
  const auto make = [&](const std::string& name, int white) {
    HostImage image;
    image.Reset(8, 4, 500, 900);
    for (std::size_t i = 0; i < image.ByteCount(); ++i)
      image.Row(0)[i] = static_cast<std::byte>(i % 4 == 3 ? 51 : i / image.RowBytes() / 40 % 2 == 0 ? white : 0);
    PictureWriter().Write(folder_.path() / name, image, nullptr, true);
  };
  make("straight.tif", 255);
  make("in.tif", 51);
  std::string bytes = Bytes(folder_.path() / "in.tif");
  // Its tag of further samples.
  const std::size_t entry = bytes.find(std::string("\x52\1\3\0\1\0\0\0\2\0", 10));
  ASSERT_NE(entry, std::string::npos);
  bytes[entry + 8] = 1;
  std::ofstream(folder_.path() / "in.tif", std::ios::binary) << bytes;
  ExpectSame("in.tif", "tif");
  // The light of the straight colours is blurred.
  HostImage associated;
  HostImage straight;
  PictureReader().ReadColour(folder_.path() / "out.tif", 8, associated);
  Render("straight.tif", "straight-out.tif", 4);
  PictureReader().ReadColour(folder_.path() / "straight-out.tif", 8, straight);
  ASSERT_EQ(associated.ByteCount(), straight.ByteCount());
  constexpr int kAlpha = 5;
  for (std::size_t i = 0; i < straight.ByteCount(); ++i) {
    const int times = i % 4 == 3 ? 1 : kAlpha;
    ASSERT_NEAR(times * std::to_integer<int>(associated.Row(0)[i]), std::to_integer<int>(straight.Row(0)[i]), 3) << i;
  }
}

TEST_F(FrameOverlapOfFiles, AreTheSameWithAMask) {
  MakeNoise("mask.png");
  job_.mask.emplace().file = "mask.png";
  for (const std::string extension : {"png", "exr"})
    ExpectSame(MakeNoise("in." + extension), extension);
  job_.mask->offset = {40, -100};
  ExpectSame("in.png", "png");
  // A mask of another size, which is told.
  MakeNoise("mask.exr");
  job_.mask->file = "mask.exr";
  job_.mask->offset = {};
  ExpectSame("in.png", "png");
}

// Such outputs lie otherwise than the input, all of which they wait for.
TEST_F(FrameOverlapOfFiles, AreTheSameOfOtherSizes) {
  MakeNoise("mask.png");
  for (const std::string& from : {MakeNoise("in.png"), MakeNoise("in.tif")}) {
    for (const std::int32_t height : {200, 899, 901, 2000}) {
      for (const bool hasMask : {false, true}) {
        job_.output.height = height;
        job_.mask.reset();
        if (hasMask) job_.mask.emplace().file = "mask.png";
        ExpectSame(from, "png");
      }
    }
  }
}

TEST_F(FrameOverlapOfFiles, WithoutTheirMaskAreNotMade) {
  options_.overwrite = true;
  MakeNoise("in.png");
  MakeNoise("in.dpx");
  job_.mask.emplace().file = "in.dpx";
  std::filesystem::resize_file(folder_.path() / "in.dpx", 5000);
  Render("in.png", "out.png", 4);
  EXPECT_EQ(summary_.code, ExitCode::CannotRead);
  EXPECT_NE(seen_.results.front().message.find("in.dpx"), std::string::npos) << seen_.results.front().message;
  ExpectNothingWritten();
  // What the input lacks is told first.
  std::filesystem::resize_file(folder_.path() / "in.png", 5000);
  Render("in.png", "out.png", 4);
  EXPECT_EQ(summary_.code, ExitCode::CannotRead);
  EXPECT_NE(seen_.results.front().message.find("in.png"), std::string::npos) << seen_.results.front().message;
  ExpectNothingWritten();
}

TEST_F(FrameOverlapOfFiles, MayTakeThePlaceOfTheirMask) {
  MakeNoise("in.png");
  MakeNoise("mask.png");
  job_.mask.emplace().file = "mask.png";
  options_.overwrite = true;
  const std::string expected = Render("in.png", "out.png", 1);
  EXPECT_TRUE(Render("in.png", "mask.png", 4) == expected);
}

TEST_F(FrameOverlapOfFiles, AreRenderedInBands) {
  const std::string from = MakeNoise("in.png");
  int renders = 0;
  CallTrace trace([&](const std::string& line) { renders += line.find("RenderFrame") != std::string::npos; });
  options_.trace = &trace;
  options_.overwrite = true;
  Render(from, "out.png", 1);
  EXPECT_EQ(renders, 1);
  renders = 0;
  Render(from, "out.png", 4);
  EXPECT_EQ(renders, 17);
  EXPECT_EQ(seen_.results.front().overscan->left, 15.0);
  renders = 0;
  job_.mask.emplace().file = MakeNoise("mask.png");
  job_.depth = 32;
  job_.linear = job_.premultipliesAround = true;
  Render(from, "out.png", 4);
  EXPECT_EQ(renders, 17);
  EXPECT_EQ(Warnings().size(), 1U) << "colours under transparent pixels";
  // A sequence is read while other frames of it are rendered.
  renders = 0;
  job_.frames = FrameRange{1, 2, 1};
  Render(from, "out.%d.png", 4);
  EXPECT_EQ(summary_.done, 2);
  EXPECT_EQ(renders, 2);
}

TEST_F(FrameOverlapOfFiles, OfADamagedPictureAreNotMade) {
  const std::string from = MakeNoise("in.png");
  const std::string bytes = Bytes(folder_.path() / from);
  std::filesystem::resize_file(folder_.path() / from, bytes.size() / 2);
  Render(from, "out.png", 4);
  EXPECT_EQ(summary_.code, ExitCode::CannotRead);
  ASSERT_EQ(seen_.results.size(), 1U);
  EXPECT_EQ(seen_.results.front().status, FrameStatus::Failed);
  EXPECT_NE(seen_.results.front().message.find("in.png"), std::string::npos) << seen_.results.front().message;
  ExpectNothingWritten();
}

TEST_F(FrameOverlapOfFiles, OfARunThatIsStoppedAreNotMade) {
  const std::string from = MakeNoise("in.png");
  context_.Stop();
  Render(from, "out.png", 4);
  EXPECT_EQ(summary_.code, ExitCode::Interrupted);
  ExpectNothingWritten();
}

TEST_F(FrameOverlapOfFiles, MayTakeThePlaceOfTheirInput) {
  MakeNoise("in.png");
  options_.overwrite = true;
  const std::string expected = Render("in.png", "out.png", 1);
  EXPECT_TRUE(Render("in.png", "in.png", 4) == expected);
}

// What its values lose is known when all of them are read.
TEST_F(FrameOverlapOfFiles, DoNotTakeThePlaceOfAnInputThatHoldsMore) {
  const FileWindow all{0, 0, 60, 800};
  WriteWindowed(folder_.path() / "in.exr", all, all, {"R", "G", "B"}, std::numeric_limits<float>::quiet_NaN());
  const std::string before = Bytes(folder_.path() / "in.exr");
  options_.overwrite = true;
  EXPECT_TRUE(Render("in.exr", "in.exr", 4) == before);
  EXPECT_EQ(summary_.code, ExitCode::CannotWrite);
  ExpectNothingWritten();
}

TEST_F(FrameOverlapOfFiles, ThatExistAreSkipped) {
  const std::string from = MakeNoise("in.png");
  const std::string first = Render(from, "out.png", 4);
  options_.skipExisting = true;
  EXPECT_EQ(Render(from, "out.png", 4), first);
  EXPECT_EQ(summary_.skipped, 1);
  EXPECT_EQ(summary_.done, 0);
}

TEST_F(FrameOverlapOfFiles, WarnOfTheirReading) {
  // Values above 2 are limited at 16 bits.
  HostImage image;
  image.Reset(32, 4, kWidthOfExr, 800);
  SetFloats(image, std::vector<float>(ComponentCount(image), 5.0f));
  PictureWriter().Write(folder_.path() / "in.exr", image, nullptr, true);
  job_.depth = 16;
  ExpectSame("in.exr", "exr");
  EXPECT_FALSE(Warnings().empty());
}

}  // namespace
}  // namespace vblur::host
