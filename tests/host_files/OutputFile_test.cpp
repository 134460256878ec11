#include "host/OutputFile.h"

#include <csignal>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "host/PartFiles.h"
#include "host/pictures/PictureFileMetadata.h"
#include "host/pictures/PictureFileOpen.h"
#include "tests/host/FailureOf.h"
#include "tests/host/ScratchFolder.h"
#include "tests/host_files/Pictures.h"
#include "tests/host_files/RawPictures.h"

namespace vblur::host {
namespace {

class OutputFileTest : public testing::Test {
 protected:
  OutputFileTest() {
    image_.Reset(8, 4, 40, 30);
    FillRandom(image_, 0, 255, 1);
  }

  std::string WriteFailure(const std::filesystem::path& path, bool overwrite) {
    const auto failure = CaughtFailure([&] { PictureWriter().Write(path, image_, nullptr, overwrite); });
    EXPECT_EQ(failure->code(), ExitCode::CannotWrite);
    return failure->what();
  }

  ScratchFolder folder_;
  HostImage image_;
};

TEST_F(OutputFileTest, AnExistingFileIsKeptUnlessAskedOtherwise) {
  const auto path = folder_.Write("out.png", "old");
  EXPECT_EQ(
      WriteFailure(path, false),
      path.string() +
          ": cannot write: the file exists already; give --overwrite to replace it or --skip-existing to leave it");
  EXPECT_EQ(Bytes(path), "old");
  PictureWriter().Write(path, image_, nullptr, true);
  EXPECT_EQ(ReadPictureInfo(path).width, 40);
  EXPECT_EQ(NamesIn(folder_.path()), std::set<std::string>{"out.png"});
}

TEST_F(OutputFileTest, AReplacedFileKeepsItsPermissionsAndItsLink) {
  const auto path = folder_.Write("real.png", "old");
  std::filesystem::permissions(path, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  std::filesystem::create_symlink("real.png", folder_.path() / "link.png");
  PictureWriter().Write(folder_.path() / "link.png", image_, nullptr, true);
  EXPECT_TRUE(std::filesystem::is_symlink(folder_.path() / "link.png"));
  EXPECT_EQ(ReadPictureInfo(path).width, 40);
  EXPECT_EQ(std::filesystem::status(path).permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(OutputFileTest, PartsOfProcessesThatAreGoneAreCleared) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(0);
  ASSERT_GT(child, 0);
  const auto mine = PartFileFor(folder_.path() / "a.b.0001.png");
  std::string gone = mine.filename().string();
  const std::string own = "-" + std::to_string(::getpid()) + "-";
  gone.replace(gone.find(own), own.size(), "-" + std::to_string(child) + "-");
  ::waitpid(child, nullptr, 0);
  std::string elsewhere = gone;
  elsewhere.replace(elsewhere.find(".0001.") + 6, 1, "another_machine_");

  const std::set<std::string> kept = {mine.filename().string(), elsewhere, ".note.part.png", "out.png"};
  for (const std::string& name : kept)
    folder_.Write(name, "x");
  folder_.Write(gone, "x");
  RemoveAbandonedParts(folder_.path());
  EXPECT_EQ(NamesIn(folder_.path()), kept);
  RemoveAbandonedParts(folder_.path() / "none");
}

TEST_F(OutputFileTest, PlacesThatHoldNoFileAreRefused) {
  EXPECT_NE(WriteFailure(folder_.path() / "no" / "out.png", true).find("/no does not exist"), std::string::npos);
  std::filesystem::create_directory(folder_.path() / "dir.png");
  EXPECT_NE(WriteFailure(folder_.path() / "dir.png", true).find("it is a folder"), std::string::npos);
  std::filesystem::create_symlink("/dev/full", folder_.path() / "full.png");
  EXPECT_NE(WriteFailure(folder_.path() / "full.png", true).find("not a regular file"), std::string::npos);
  EXPECT_EQ(NamesIn(folder_.path()), (std::set<std::string>{"dir.png", "full.png"}));
}

TEST_F(OutputFileTest, AnUnknownExtensionIsRefusedWithTheKnownOnes) {
  for (const char* name : {"a.xyz", "a", "png", ".png", "a.png.bak"}) {
    const std::string message = UsageFailureOf([&] { OutputFormatOf(name); });
    EXPECT_NE(message.find("one of these was expected: png jpg"), std::string::npos) << message;
  }
  EXPECT_EQ(OutputFormatOf("A.PNG").name, "png");
  EXPECT_EQ(OutputFormatOf("a.b.JPeG").name, "jpeg");
}

TEST_F(OutputFileTest, APictureTooLargeForItsFormatIsRefused) {
  image_.Reset(8, 4, 65501, 1);
  image_.Clear();
  EXPECT_EQ(WriteFailure("out.jpg", true),
            "out.jpg: cannot write: a picture of this format has at most 65500 pixels a side");
}

TEST_F(OutputFileTest, AStoppedWriteLeavesTheOldFile) {
  const auto path = folder_.Write("out.exr", "old");
  PictureWriter stopped([] { return true; });
  EXPECT_THROW(stopped.Write(path, image_, nullptr, true), FileInterrupted);
  EXPECT_EQ(Bytes(path), "old");
  EXPECT_EQ(NamesIn(folder_.path()), std::set<std::string>{"out.exr"});
}

class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int);
};

// A limit on the size of files fails in the middle as a full disk does.
class FullDisk : public testing::TestWithParam<const char*> {};

TEST_P(FullDisk, LeavesTheOldFileAndSaysSo) {
  const ScratchFolder folder;
  const auto path = folder.Write("out." + std::string(GetParam()), "old");
  HostImage image;
  image.Reset(16, 4, 110, 110);
  FillRandom(image, 0, 16384, 2);
  std::string message;
  {
    const FileSizeLimit limit(8000);
    message = CaughtFailure([&] { PictureWriter().Write(path, image, nullptr, true); })->what();
  }
  EXPECT_EQ(message.rfind(path.string() + ": cannot write: ", 0), 0u) << message;
  EXPECT_EQ(Bytes(path), "old");
  EXPECT_EQ(NamesIn(folder.path()).size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Formats, FullDisk,
                         testing::Values("png", "jpg", "tif", "exr", "dpx", "webp", "tga", "bmp", "ppm", "sgi", "hdr"),
                         [](const auto& format) { return std::string(format.param); });

// What a file tells about its picture, after one reading and one writing.
class Metadata : public testing::Test {
 protected:
  OIIO::ImageSpec PassOn(const std::string& from, const std::string& to) {
    HostImage image;
    const auto read = PictureReader().ReadColour(folder_.path() / from, 16, image);
    PictureWriter().Write(folder_.path() / to, image, read.metadata.get(), true);
    return OpenPictureFile(folder_.path() / to).file->spec();
  }

  ScratchFolder folder_;
};

TEST_F(Metadata, IsPassedOn) {
  OIIO::ImageSpec spec(2, 1, 4, OIIO::TypeDesc::HALF);
  spec.attribute("PixelAspectRatio", 2.0f);
  spec.attribute("XResolution", 300.0f);
  spec.attribute("YResolution", 300.0f);
  spec.attribute("ResolutionUnit", "in");
  const unsigned code[2] = {0x01020304, 0};
  spec.attribute("smpte:TimeCode", OIIO::TypeTimeCode, code);
  spec.attribute("compression", "rle");
  WriteRaw(folder_.path() / "in.exr", "openexr", spec, std::vector<float>(8, 0.5f));
  const auto exr = PassOn("in.exr", "out.exr");
  EXPECT_EQ(exr.get_float_attribute("PixelAspectRatio"), 2.0f);
  const auto* passed = exr.find_attribute("smpte:TimeCode");
  ASSERT_TRUE(passed);
  EXPECT_EQ(std::memcmp(passed->data(), code, sizeof code), 0);
  EXPECT_EQ(exr.get_string_attribute("compression"), "rle");
  const auto tiff = PassOn("in.exr", "out.tif");
  EXPECT_EQ(tiff.get_float_attribute("XResolution"), 300.0f);
  EXPECT_EQ(tiff.get_string_attribute("ResolutionUnit"), "in");
}

TEST_F(Metadata, LossyCompressionIsNotPassedOn) {
  OIIO::ImageSpec spec(2, 1, 4, OIIO::TypeDesc::HALF);
  spec.attribute("compression", "dwaa");
  WriteRaw(folder_.path() / "in.exr", "openexr", spec, std::vector<float>(8, 0.5f));
  EXPECT_EQ(PassOn("in.exr", "out.exr").get_string_attribute("compression"), "piz");
}

TEST_F(Metadata, WindowsOfAPictureArePassedOn) {
  OIIO::ImageSpec spec(4, 2, 4, OIIO::TypeDesc::FLOAT);
  spec.x = -1;
  spec.y = 3;
  spec.full_x = 0;
  spec.full_y = 0;
  spec.full_width = 16;
  spec.full_height = 9;
  WriteRaw(folder_.path() / "in.exr", "openexr", spec, std::vector<float>(32, 0.5f));
  const auto same = PassOn("in.exr", "out.exr");
  EXPECT_EQ(same.roi(), spec.roi());
  EXPECT_EQ(same.roi_full(), spec.roi_full());
  const auto other = PassOn("in.exr", "out.png");
  EXPECT_EQ(other.width, 4);
  EXPECT_EQ(other.height, 2);
}

TEST_F(Metadata, AnOrientationStaysATag) {
  OIIO::ImageSpec spec(4, 2, 3, OIIO::TypeDesc::UINT8);
  spec.attribute("Orientation", 6);
  WriteRaw(folder_.path() / "in.jpg", "jpeg", spec, std::vector<std::uint8_t>(24, 100));
  for (const char* name : {"out.jpg", "out.tif", "out.exr", "out.tga", "out.dpx"}) {
    const auto out = PassOn("in.jpg", name);
    EXPECT_EQ(out.width, 4) << name;
    EXPECT_EQ(out.height, 2) << name;
  }
  EXPECT_EQ(PassOn("in.jpg", "out.jpg").get_int_attribute("Orientation"), 6);
  EXPECT_EQ(PassOn("in.jpg", "out.tif").get_int_attribute("Orientation"), 6);
}

// Whether colours are stored multiplied is said as the source said it; the numbers never change.
TEST_F(Metadata, TheKindOfAlphaIsPassedOnWithTheSameNumbers) {
  const std::vector<std::uint16_t> samples = {60000, 40000, 20000, 100, 1, 2, 3, 0};
  for (const bool unassociated : {false, true}) {
    OIIO::ImageSpec spec(2, 1, 4, OIIO::TypeDesc::UINT16);
    if (unassociated) spec.attribute("oiio:UnassociatedAlpha", 1);
    auto writer = OIIO::ImageOutput::create("tiff");
    ASSERT_TRUE(writer->open((folder_.path() / "in.tif").string(), spec));
    ASSERT_TRUE(writer->write_image(OIIO::TypeDesc::UINT16, samples.data()));
    ASSERT_TRUE(writer->close());
    const auto out = PassOn("in.tif", "out.tif");
    EXPECT_EQ(out.get_int_attribute("oiio:UnassociatedAlpha") != 0, unassociated);
    HostImage in;
    HostImage again;
    PictureReader().ReadColour(folder_.path() / "in.tif", 16, in);
    PictureReader().ReadColour(folder_.path() / "out.tif", 16, again);
    EXPECT_EQ(Component(in, 0), 15000);
    EXPECT_EQ(Components(again), Components(in));
  }
}

TEST_F(Metadata, AProfileForGreyIsDropped) {
  for (const bool grey : {true, false}) {
    std::vector<unsigned char> profile(132, 0);
    std::memcpy(profile.data() + 16, grey ? "GRAY" : "RGB ", 4);
    OIIO::ImageSpec spec(1, 1, grey ? 1 : 3, OIIO::TypeDesc::UINT8);
    spec.attribute("ICCProfile", OIIO::TypeDesc(OIIO::TypeDesc::UINT8, 132), profile.data());
    WriteRaw(folder_.path() / "in.tif", "tiff", spec, std::vector<std::uint8_t>(3, 100));
    EXPECT_EQ(PassOn("in.tif", "out.tif").find_attribute("ICCProfile") != nullptr, !grey);
  }
}

}  // namespace
}  // namespace vblur::host
