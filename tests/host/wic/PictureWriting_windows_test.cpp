// Pictures through files and back, with the imaging component.
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
#include "tests/support/host/ExifBytes.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/JpegBytes.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/PngBytes.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TiffBytes.h"

#include <windows.h>

namespace vblur::host {
namespace {

using Notes = std::vector<std::string>;

const std::string kQualityLoss = ", quality (the system's codec has one of its own)";
const std::string kQualityNote = "output: the system's codec has no choice of quality, written with its own";

class PictureWriting : public testing::Test {
 protected:
  // Components of 16 bits that come back from samples of 16 bits as they were: 0 to full.
  void MakePicture(std::int32_t depth, std::int32_t width, std::int32_t height, unsigned seed) {
    image_.Reset(depth, 4, width, height);
    FillRandom(image_, 0, depth == 8 ? 255 : 16384, seed);
  }

  Notes Write(const std::filesystem::path& path, const OutputStorage& storage = {},
              const PictureMetadata* metadata = nullptr) {
    OutputOptions options;
    options.overwrite = true;
    options.sync = false;
    options.storage = storage;
    auto written = PictureWriter().WriteBeside(path, image_, metadata, options);
    written.Commit();
    Notes notes = written.Notes();
    if (storage.quality) return notes;
    // Of every JPEG file where the codec is like that.
    std::erase(notes, kQualityNote);
    for (std::string& note : notes) {
      if (const std::size_t at = note.find(kQualityLoss); at != std::string::npos) note.erase(at, kQualityLoss.size());
    }
    std::erase(notes, "output: lost: quality (the system's codec has one of its own)");
    return notes;
  }

  // The components of a file, and of the picture with a full alpha where the file has none.
  void ExpectSame(const std::filesystem::path& path) {
    HostImage read;
    const ReadPicture facts = PictureReader().ReadColour(path, image_.Depth(), read);
    ASSERT_EQ(read.Width(), image_.Width());
    ASSERT_EQ(read.Height(), image_.Height());
    const std::int32_t full = image_.Depth() == 8 ? 255 : 16384;
    for (std::size_t i = 0; i < ComponentCount(read); ++i) {
      const bool isOpaque = i % 4 == 3 && !facts.info.HasAlpha();
      ASSERT_EQ(Component(read, i), isOpaque ? full : Component(image_, i)) << i;
    }
  }

  ScratchFolder folder_;
  HostImage image_;
};

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

// Made of the five texts, and what is the same in all files that hold them.
class PictureWritingTexts : public PictureWriting {
 protected:
  using Texts = PictureTexts;
  static std::string Known(const char* name) { return Bytes(std::filesystem::path(VBLUR_PICTURES_FOLDER) / name); }
  static std::string Png(const std::string& chunks) { return WithChunksOf(Known("rgb8.png"), chunks); }
  static std::string Jpeg(const std::string& segments) {
    const std::string plain = Known("rgb.jpg");
    return plain.substr(0, 20) + segments + plain.substr(20);
  }
  // Writes a file of these bytes as another; returns what the other holds.
  FileExtras Pass(const std::string& from, const std::string& bytes, const std::string& to, const Notes& notes) {
    const auto source = folder_.Write(from, bytes);
    const ReadPicture read = PictureReader().ReadColour(source, 8, image_);
    const auto path = folder_.path() / to;
    Notes told = Write(path, {}, read.metadata.get());
    std::erase_if(told, [](const std::string& note) { return note.find("lost: compression") != std::string::npos; });
    EXPECT_EQ(told, notes) << from << " to " << to;
    written_ = Bytes(path);
    const PictureInfo info = ReadPictureInfo(path);
    EXPECT_EQ(info.unread, std::vector<std::string>{}) << from << " to " << to;
    return ReadFileExtras(path, info.format, info.exif);
  }
  static Texts TextsOf(const FileExtras& extras) {
    Texts all = extras.texts;
    all.insert(extras.exifTexts.begin(), extras.exifTexts.end());
    return all;
  }

  const Texts texts_{
      {270, "A fox"}, {305, "A program"}, {306, "2020:01:02 03:04:05"}, {315, "J\u00f6rg"}, {33432, "\u00a9 somebody"}};
  std::string written_;
};

TEST_F(PictureWritingTexts, GoThroughAllFormatsThatHoldThem) {
  TiffBytes file(2, 2, 8, 3, "abcdefghijkl");
  for (const auto& [tag, text] : texts_)
    file.Text(tag, text);
  const std::string tiff = file.Short(274, {6}).File();
  for (const char* first : {"1.png", "1.jpg", "1.tif"}) {
    const FileExtras once = Pass("source.tif", tiff, first, {});
    EXPECT_EQ(TextsOf(once), texts_) << first;
    EXPECT_EQ(once.orientation, 6) << first;
    const std::string bytes = written_;
    for (const char* second : {"2.png", "2.jpg", "2.tif"}) {
      const FileExtras twice = Pass(first, bytes, second, {});
      EXPECT_EQ(TextsOf(twice), texts_) << first << " " << second;
      EXPECT_EQ(twice.orientation, 6) << first << " " << second;
    }
  }
}

TEST_F(PictureWritingTexts, TheCameraOfATiffFilePassesAndItsExifDataAreTold) {
  TiffBytes file(2, 2, 8, 3, "abcdefghijkl");
  const std::string camera = file.Text(271, "Maker").Text(272, "Model").File();
  for (const char* name : {"out.png", "out.jpg", "out.tif"}) {
    Pass("source.tif", camera, name, {});
    EXPECT_NE(written_.find(std::string("Maker\0", 6)), std::string::npos) << name;
    EXPECT_NE(written_.find(std::string("Model\0", 6)), std::string::npos) << name;
  }
  const std::string exif = TiffBytes(2, 2, 8, 3, "abcdefghijkl").Long(34665, {8}).Long(34853, {8}).File();
  for (const char* name : {"out.png", "out.jpg", "out.tif"})
    Pass("source.tif", exif, name, {"output: lost: Exif data, GPS data"});
}

TEST_F(PictureWritingTexts, OfAPngFileJoinItsExifDataInAJpegFile) {
  for (const bool isBig : {false, true}) {
    const std::string exif = ExifBytes{.isBig = isBig, .description = "fox"}.Build();
    const std::string png = Png(PngChunk("eXIf", exif) + PngChunk("tEXt", std::string("Author\0me", 9)));
    EXPECT_EQ(TextsOf(Pass("source.png", png, "out.jpg", {})), (Texts{{270, "fox"}, {315, "me"}}));
    EXPECT_EQ(TextsOf(Pass("source.png", png, "out.png", {})), (Texts{{270, "fox"}, {315, "me"}}));
  }
}

TEST_F(PictureWritingTexts, ThatAreTooLongForAJpegFileAreTold) {
  const std::string png = Png(PngChunk("tEXt", std::string("Author\0", 7) + std::string(70000, 'x')));
  const FileExtras extras =
      Pass("source.png", png, "out.jpg", {"output: lost: Artist (longer than files of this format hold)"});
  EXPECT_EQ(TextsOf(extras), Texts{});
  EXPECT_EQ(TextsOf(Pass("source.png", png, "out.tif", {})).at(315).size(), 70000u);
}

TEST_F(PictureWritingTexts, TheCommentOfAJpegFileIsItsDescription) {
  const std::string jpeg = Jpeg(CommentSegment());
  for (const char* name : {"out.png", "out.jpg", "out.tif"})
    EXPECT_EQ(TextsOf(Pass("source.jpg", jpeg, name, {})), (Texts{{270, "comment"}})) << name;
  Pass("source.jpg", jpeg, "out.jpg", {});
  EXPECT_NE(written_.find(CommentSegment()), std::string::npos);
  Pass("source.jpg", jpeg, "out.bmp", {"output: lost: text"});
}

TEST_F(PictureWritingTexts, IptcDataPassBetweenJpegAndTiffFiles) {
  // A caption: Hello.
  const std::string iptc("\x1c\x02\x78\0\x05Hello", 10);
  const std::string resource =
      std::string("Photoshop 3.0\0", 14) + std::string("8BIM\x04\x04\0\0\0\0\0\x0a", 12) + iptc;
  const std::string jpeg = Jpeg(JpegSegment(0xed, resource));
  EXPECT_EQ(Pass("source.jpg", jpeg, "out.jpg", {}).iptc, iptc);
  // Whole numbers of four bytes.
  EXPECT_EQ(Pass("source.jpg", jpeg, "out.tif", {}).iptc, iptc + std::string(2, '\0'));
  const std::string tiff = written_;
  EXPECT_EQ(Pass("source.tif", tiff, "out.tif", {}).iptc, iptc + std::string(2, '\0'));
  EXPECT_EQ(Pass("source.tif", tiff, "out.jpg", {}).iptc, iptc + std::string(2, '\0'));
  Pass("source.jpg", jpeg, "out.png", {"output: lost: IPTC data"});
}

TEST_F(PictureWritingTexts, AResolutionWithoutAUnitPassesFromTiffToTiff) {
  TiffBytes file(3, 1, 8, 3, "abcdefghi");
  const std::string tiff = file.Short(282, {4}).Short(283, {3}).Short(296, {1}).File();
  EXPECT_TRUE(Pass("source.tif", tiff, "out.tif", {}).hasPixelAspect);
  Pass("source.tif", tiff, "out.png", {"output: lost: pixel aspect"});
  std::string jpeg = Jpeg("");
  jpeg.replace(13, 5, std::string("\0\0\4\0\3", 5));
  Pass("source.jpg", jpeg, "out.png", {"output: lost: pixel aspect"});
  Pass("source.jpg", jpeg, "out.jpg", {"output: lost: pixel aspect"});
}

TEST_F(PictureWritingTexts, TheTimeAndThePlacePassFromPngToPng) {
  const std::string time = PngChunk("tIME", std::string("\x07\xe4\x01\x02\x03\x04\x05", 7));
  const std::string place = PngChunk("oFFs", std::string("\0\0\0\x05\0\0\0\x07\0", 9));
  const std::string scale = PngChunk("pHYs", std::string("\0\0\0\x02\0\0\0\x01\0", 9));
  std::string plain = Known("rgb8.png");
  if (const std::size_t at = plain.find("oFFs"); at != std::string::npos) plain.erase(at - 4, 21);
  const std::string png = WithChunksOf(plain, time + place + scale);
  Pass("source.png", png, "out.png", {});
  for (const std::string& chunk : {time, place, scale}) {
    EXPECT_LT(written_.find(chunk), written_.find("IDAT"));
    EXPECT_EQ(written_.find(chunk.substr(4, 4)), written_.rfind(chunk.substr(4, 4)));
  }
  const FileExtras tiff = Pass("source.png", png, "out.tif", {"output: lost: pixel aspect, attribute oFFs"});
  EXPECT_EQ(TextsOf(tiff), (Texts{{306, "2020:01:02 03:04:05"}}));
}

TEST_F(PictureWritingTexts, DamagedChunksAreTold) {
  std::string text = PngChunk("tEXt", std::string("Author\0me", 9));
  text.back() = static_cast<char>(text.back() ^ 1);
  Pass("source.png", Png(text), "out.png", {"output: lost: damaged PNG chunk tEXt"});
  EXPECT_EQ(written_.find("tEXt"), std::string::npos);
  for (const std::string& profile : {std::string("nothing"), std::string("x\0\0no profile", 13)}) {
    Pass("source.png", Png(PngChunk("iCCP", profile)), "out.png",
         {"output: lost: colour profile (damaged, or for other colours)"});
    EXPECT_EQ(written_.find("iCCP"), std::string::npos);
  }
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
