// Pictures through files and back, with the imaging component.
#include "tests/host/wic/PictureWriting_windows.h"

#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "host/base/Failure.h"
#include "host/files/OutputFile.h"
#include "host/files/PictureReport.h"
#include "host/formats/FileExtras.h"
#include "host/formats/FileHeader.h"
#include "host/formats/PngHead.h"
#include "host/formats/TiffDirectory.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/JpegBytes.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/PngBytes.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TiffBytes.h"

#include <windows.h>

namespace vblur::host {
namespace {

TEST_F(PictureWriting, EveryFormatAndDepthComesBackAtAnySize) {
  std::mt19937 random(7);
  std::uniform_int_distribution<std::int32_t> side(1, 70);
  for (const char* name : {"p.png", "t.tif", "b.bmp"}) {
    for (const std::int32_t depth : {8, 16}) {
      if (depth == 16 && std::string_view(name) == "b.bmp") continue;
      for (int i = 0; i < 12; ++i) {
        MakePicture(depth, i == 0 ? 1 : side(random), i == 1 ? 1 : side(random), random());
        const auto path = folder_.path() / name;
        Write(path);
        ExpectSame(path);
        const PictureInfo info = ReadPictureInfo(path);
        EXPECT_EQ(info.NaturalDepth(), depth);
        EXPECT_EQ(info.HasAlpha(), std::string_view(name) != "b.bmp");
      }
    }
  }
}

TEST_F(PictureWriting, ColoursStayWhereAlphaIsNone) {
  for (const char* name : {"p.png", "t.tif"}) {
    MakePicture(16, 9, 5, 3);
    for (std::size_t i = 3; i < ComponentCount(image_); i += 4)
      SetComponent(image_, i, 0);
    Write(folder_.path() / name);
    ExpectSame(folder_.path() / name);
  }
}

TEST_F(PictureWriting, GreyStaysGrey) {
  const auto pictures = std::filesystem::path(VBLUR_PICTURES_FOLDER);
  const std::pair<const char*, std::int32_t> files[] = {{"grey8.png", 8}, {"grey16.png", 16}, {"greya16.png", 16}};
  for (const auto& [source, depth] : files) {
    const ReadPicture read = PictureReader().ReadColour(pictures / source, depth, image_);
    for (const char* name : {"p.png", "t.tif", "b.bmp"}) {
      if (std::string_view(name) == "b.bmp" && depth == 16) continue;
      const auto path = folder_.path() / name;
      Write(path, {}, read.metadata.get());
      ExpectSame(path);
      const bool staysGrey = std::string_view(name) == "p.png" && !read.info.HasAlpha();
      EXPECT_TRUE(!staysGrey || ReadPictureInfo(path).IsGrey());
    }
  }
}

// Samples of 16 bits pass around a part that is rendered; there no bit may change.
TEST_F(PictureWriting, SamplesAroundAPartAreThoseOfTheFile) {
  const auto source = std::filesystem::path(VBLUR_PICTURES_FOLDER) / "rgba16.png";
  ReadChoice choice;
  choice.keepsSamples = true;
  const ReadPicture read = PictureReader().ReadColour(source, 16, image_, choice);
  ASSERT_TRUE(read.samples);
  OutputOptions options;
  options.part = RenderedPart{{0, 0, 0, 0}, read.samples};
  const auto path = folder_.path() / "around.png";
  PictureWriter().WriteBeside(path, image_, read.metadata.get(), options).Commit();
  HostImage again;
  const ReadPicture copy = PictureReader().ReadColour(path, 16, again, choice);
  ASSERT_TRUE(copy.samples);
  EXPECT_EQ(*copy.samples, *read.samples);
}

TEST_F(PictureWriting, QualityMakesJpegFilesSmallerOrIsToldToBeNone) {
  MakePicture(8, 64, 64, 5);
  Notes notes;
  const auto sizeAt = [&](std::int32_t quality) {
    OutputStorage storage;
    storage.quality = quality;
    notes = Write(folder_.path() / "q.jpg", storage);
    return std::filesystem::file_size(folder_.path() / "q.jpg");
  };
  const auto small = sizeAt(20);
  if (small < sizeAt(95)) {
    EXPECT_EQ(notes, Notes{});
  } else {
    EXPECT_EQ(notes, Notes{"output: the system's codec has no choice of quality, written with its own"});
  }
}

TEST_F(PictureWriting, ACompressionThatTheCodecDoesNotHaveIsTold) {
  MakePicture(8, 64, 64, 5);
  for (const char* name : {"none", "lzw", "zip"}) {
    OutputStorage storage;
    storage.compression = name;
    const Notes notes = Write(folder_.path() / "c.tif", storage);
    ExpectSame(folder_.path() / "c.tif");
    const std::string written = ReportPicture(folder_.path() / "c.tif").compression;
    if (written == name) {
      EXPECT_EQ(notes, Notes{});
    } else {
      EXPECT_EQ(notes, Notes{"output: the system's codec has no compression " + std::string(name) + ", written with " +
                             written});
    }
  }
}

TEST_F(PictureWriting, NamesBeyondAsciiAndLongPaths) {
  MakePicture(8, 5, 4, 1);
  std::filesystem::path deep = folder_.path();
  for (int i = 0; i < 6; ++i)
    deep /= std::wstring(50, static_cast<wchar_t>(L'a' + i));
  std::filesystem::create_directories(L"\\\\?\\" + deep.native());
  for (const auto& path : {folder_.path() / L"gr\u00fc\u00df \u65e5\u672c.png", deep / L"p.png"}) {
    Write(path);
    ExpectSame(path);
  }
}

TEST_F(PictureWriting, TwoThreadsAtOnce) {
  const auto work = [&](unsigned seed) {
    HostImage image;
    image.Reset(16, 4, 40, 30);
    FillRandom(image, 0, 16384, seed);
    const auto path = folder_.path() / ("thread" + std::to_string(seed) + ".png");
    for (int i = 0; i < 20; ++i) {
      PictureWriter().Write(path, image, nullptr, true);
      HostImage read;
      PictureReader().ReadColour(path, 16, read);
      ASSERT_EQ(Components(read), Components(image));
    }
  };
  std::thread other(work, 1);
  work(2);
  other.join();
}

TEST_F(PictureWriting, ManyFilesLeaveNoHandles) {
  MakePicture(8, 8, 8, 1);
  const auto path = folder_.path() / "h.png";
  const auto run = [&](int count) {
    for (int i = 0; i < count; ++i) {
      Write(path);
      ReadPictureInfo(path);
    }
    DWORD handles = 0;
    ::GetProcessHandleCount(::GetCurrentProcess(), &handles);
    return handles;
  };
  const DWORD before = run(20);
  EXPECT_LE(run(500), before + 2);
}

TEST_F(PictureWriting, StopsWhenAsked) {
  MakePicture(8, 64, 64, 5);
  PictureWriter writer([] { return true; });
  EXPECT_THROW(writer.Write(folder_.path() / "s.png", image_, nullptr, false), FileInterrupted);
  EXPECT_EQ(NamesIn(folder_.path()), std::set<std::string>{});
}

TEST_F(PictureWriting, FormatsOfOtherSystemsAreRefusedWithThoseOfThisOne) {
  MakePicture(8, 4, 4, 1);
  const auto failure = CaughtFailure([&] { Write(folder_.path() / "x.exr"); });
  ASSERT_TRUE(failure);
  EXPECT_NE(std::string(failure->what()).find("one of these was expected: png tif tiff jpg jpeg jpe bmp"),
            std::string::npos)
      << failure->what();
}

// A PNG file with a chunk behind its header.
std::string WithChunk(const std::string& png, const std::string& name, const std::string& data) {
  return WithChunksOf(png, PngChunk(name, data));
}

TEST_F(PictureWriting, ExifDataTextsAndColourChunksPassFromPngToPng) {
  const auto pictures = std::filesystem::path(VBLUR_PICTURES_FOLDER);
  // One field: the orientation.
  const std::string exif("II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0\x06\0\0\0\0\0\0\0", 26);
  const std::string text("Title\0of the picture", 20);
  const std::string gamma("\0\0\xb1\x8f", 4);
  std::string png = WithChunk(Bytes(pictures / "rgb8.png"), "tEXt", text);
  png = WithChunk(WithChunk(png, "eXIf", exif), "gAMA", gamma);
  const auto source = folder_.Write("source.png", png);
  const ReadPicture read = PictureReader().ReadColour(source, 8, image_);
  EXPECT_EQ(Write(folder_.path() / "out.png", {}, read.metadata.get()), Notes{});
  const std::string written = Bytes(folder_.path() / "out.png");
  for (const auto& [name, data] : {std::pair{"tEXt", text}, {"eXIf", exif}, {"gAMA", gamma}})
    EXPECT_NE(written.find(PngChunk(name, data)), std::string::npos) << name;
  ExpectSame(folder_.path() / "out.png");
  // A JPEG file takes the Exif data alone, a BMP file nothing.
  EXPECT_EQ(Write(folder_.path() / "out.jpg", {}, read.metadata.get()), Notes{"output: lost: attribute DocumentName"});
  EXPECT_NE(Bytes(folder_.path() / "out.jpg").find("Exif" + std::string(2, '\0') + exif), std::string::npos);
  EXPECT_EQ(ReadPictureInfo(folder_.path() / "out.jpg").exif, exif);
  EXPECT_EQ(Write(folder_.path() / "out.bmp", {}, read.metadata.get()),
            Notes{"output: lost: orientation, attribute DocumentName"});
  EXPECT_EQ(NamesIn(folder_.path()), (std::set<std::string>{"source.png", "out.png", "out.jpg", "out.bmp"}));
}

// As large as two segments of a JPEG file.
std::string MakeProfile() {
  std::string profile(100000, '\0');
  for (std::size_t i = 132; i < profile.size(); ++i)
    profile[i] = static_cast<char>(i * i / 7);
  profile.replace(0, 4, std::string("\0\x01\x86\xa0", 4));
  profile.replace(16, 4, "RGB ");
  profile.replace(36, 4, "acsp");
  profile.replace(128, 4, std::string(4, '\0'));
  return profile;
}

TEST_F(PictureWriting, AColourProfilePasses) {
  const auto pictures = std::filesystem::path(VBLUR_PICTURES_FOLDER);
  const std::string profile = MakeProfile();
  const std::string png = Bytes(pictures / "rgb8.png");
  const auto source = folder_.Write("source.png", WithChunksOf(png, PngProfileChunk(profile)));
  ReadPicture read = PictureReader().ReadColour(source, 8, image_);
  for (const char* name : {"p.png", "p.jpg", "p.tif", "again.png"}) {
    const auto path = folder_.path() / name;
    EXPECT_EQ(Write(path, {}, read.metadata.get()), Notes{}) << name;
    const PictureReport report = ReportPicture(path);
    EXPECT_TRUE(report.metadata.Has(MetadataGroup::Profile)) << name;
    read = PictureReader().ReadColour(path, 8, image_);
  }
  EXPECT_NE(Bytes(folder_.path() / "again.png").find(PngProfileChunk(profile)), std::string::npos);
}

TEST_F(PictureWriting, TextsPassFromTiffToTiff) {
  TiffBytes file(2, 2, 8, 3, "abcdefghijkl", true);
  file.Text(270, "Title")
      .Text(305, "A program")
      .Text(306, "2020:01:02 03:04:05")
      .Text(315, "Somebody")
      .Text(33432, "(c)");
  const auto source = folder_.Write("source.tif", file.Short(274, {6}).File());
  const ReadPicture read = PictureReader().ReadColour(source, 8, image_);
  const auto path = folder_.path() / "out.tif";
  const Notes notes = Write(path, {}, read.metadata.get());
  EXPECT_EQ(ListOf(LossesOf(ReportPicture(source), OutputFormatOf(path), {}, 8)).find("text"), std::string::npos);
  for (const std::string& note : notes)
    EXPECT_EQ(note.find("text"), std::string::npos) << note;
  EXPECT_EQ(ReadFileExtras(path, "tiff", "").tiffTags, ReadFileExtras(source, "tiff", "").tiffTags);
  ExpectSame(path);
}

// What a report says of outputs that are not yet written, and what is said and found of them when they are.
TEST_F(PictureWriting, EveryLossIsToldBefore) {
  for (const auto& entry : std::filesystem::directory_iterator(VBLUR_PICTURES_FOLDER)) {
    const PictureReport report = ReportPicture(entry.path());
    const std::int32_t depth = report.info.NaturalDepth();
    const ReadPicture read = PictureReader().ReadColour(entry.path(), depth, image_);
    for (const OutputFormat& format : OutputFormats()) {
      const auto path = folder_.path() / ("out." + std::string(FirstExtension(format)));
      OutputOptions options;
      options.overwrite = true;
      auto written = PictureWriter().WriteBeside(path, image_, read.metadata.get(), options);
      written.Commit();
      auto losses = LossesOf(report, format, {}, depth);
      std::erase_if(losses,
                    [](const Loss& loss) { return loss.kind == LossKind::Alpha || loss.kind == LossKind::Pictures; });
      std::string told;
      for (const std::string& note : written.Notes()) {
        EXPECT_TRUE(note.starts_with("output: lost: ") || note.starts_with("output: alpha is dropped")) << note;
        if (note.starts_with("output: lost: ")) told = note.substr(14);
      }
      EXPECT_EQ(told, ListOf(losses)) << entry.path() << " " << format.name;
      const PictureReport found = ReportPicture(path);
      EXPECT_EQ(found.info.IsGrey(), IsGrey(OutputLayoutOf(report, format, {}))) << entry.path() << " " << format.name;
      const std::string packed = OutputCompressionOf(report, format, {});
      EXPECT_TRUE(packed.empty() || packed == found.compression) << entry.path() << " " << format.name;
    }
  }
}

TEST_F(PictureWriting, TheResolutionPasses) {
  const auto pictures = std::filesystem::path(VBLUR_PICTURES_FOLDER);
  const std::string scale("\0\0\x2e\x23\0\0\x2e\x23\x01", 9);
  const auto source = folder_.Write("source.png", WithChunk(Bytes(pictures / "rgb8.png"), "pHYs", scale));
  const ReadPicture read = PictureReader().ReadColour(source, 8, image_);
  for (const auto& [name, format] :
       {std::pair{"o.png", "png"}, {"o.jpg", "jpeg"}, {"o.tif", "tiff"}, {"o.bmp", "bmp"}}) {
    EXPECT_EQ(Write(folder_.path() / name, {}, read.metadata.get()), Notes{}) << name;
    EXPECT_NEAR(ReadFileExtras(folder_.path() / name, format, "").pixelsPerInchX, 300.0, 0.6) << name;
  }
}

TEST_F(PictureWriting, APremultipliedTiffStaysDeclaredSo) {
  MakePicture(8, 9, 7, 3);
  const auto first = folder_.path() / "straight.tif";
  Write(first);
  ASSERT_TRUE(AddTiffTags(first, {{338, {3, 1, std::string("\x01\0", 2)}}}));
  HostImage read;
  const ReadPicture facts = PictureReader().ReadColour(first, 8, read);
  ASSERT_TRUE(facts.associatedAlpha);
  const auto second = folder_.path() / "again.tif";
  Write(second, {}, facts.metadata.get());
  EXPECT_TRUE(ReadFileHeader(second).associatedAlpha);
  ExpectSame(second);
}

}  // namespace
}  // namespace vblur::host
