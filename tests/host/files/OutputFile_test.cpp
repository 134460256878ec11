#include "host/files/OutputFile.h"

#include <chrono>
#include <csignal>
#include <map>
#include <thread>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "host/base/PartFiles.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/RawPictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

class OutputFile : public testing::Test {
 protected:
  OutputFile() {
    image_.Reset(8, 4, 40, 30);
    FillRandom(image_, 0, 255, 1);
  }

  std::string WriteFailure(const std::filesystem::path& path, bool overwrite) {
    const auto failure = CaughtFailure([&] { PictureWriter().Write(path, image_, nullptr, overwrite); });
    EXPECT_EQ(failure->Code(), ExitCode::CannotWrite);
    return failure->what();
  }

  ScratchFolder folder_;
  HostImage image_;
};

TEST_F(OutputFile, AnExistingFileIsKeptUnlessAskedOtherwise) {
  const auto path = folder_.Write("out.png", "old");
  EXPECT_EQ(WriteFailure(path, false), path.string() + ": cannot write: the file exists already");
  EXPECT_EQ(Bytes(path), "old");
  PictureWriter().Write(path, image_, nullptr, true);
  EXPECT_EQ(ReadPictureInfo(path).width, 40);
  EXPECT_EQ(NamesIn(folder_.path()), std::set<std::string>{"out.png"});
}

TEST_F(OutputFile, AReadOnlyFileIsNotReplaced) {
  const auto path = folder_.Write("out.png", "old");
  using enum std::filesystem::perms;
  std::filesystem::permissions(path, owner_read | group_read);
  EXPECT_EQ(WriteFailure(path, true), path.string() + ": cannot write: the file is read-only");
  EXPECT_EQ(Bytes(path), "old");
}

TEST_F(OutputFile, AReplacedFileKeepsItsPermissionsAndItsLink) {
  const auto path = folder_.Write("real.png", "old");
  std::filesystem::permissions(path, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  std::filesystem::create_symlink("real.png", folder_.path() / "link.png");
  PictureWriter().Write(folder_.path() / "link.png", image_, nullptr, true);
  EXPECT_TRUE(std::filesystem::is_symlink(folder_.path() / "link.png"));
  EXPECT_EQ(ReadPictureInfo(path).width, 40);
  EXPECT_EQ(std::filesystem::status(path).permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(OutputFile, PartFilesOfEndedProcessesAreRemoved) {
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

TEST_F(OutputFile, PlacesThatHoldNoFileAreRefused) {
  EXPECT_NE(WriteFailure(folder_.path() / "no" / "out.png", true).find("/no does not exist"), std::string::npos);
  std::filesystem::create_directory(folder_.path() / "dir.png");
  EXPECT_NE(WriteFailure(folder_.path() / "dir.png", true).find("it is a folder"), std::string::npos);
  std::filesystem::create_symlink("/dev/full", folder_.path() / "full.png");
  EXPECT_NE(WriteFailure(folder_.path() / "full.png", true).find("not a regular file; - writes a picture into a pipe"),
            std::string::npos);
  EXPECT_EQ(NamesIn(folder_.path()), (std::set<std::string>{"dir.png", "full.png"}));
}

TEST_F(OutputFile, AnUnknownExtensionIsRefusedWithTheKnownOnes) {
  for (const char* name : {"a.xyz", "a", "png", ".png", "a.png.bak"}) {
    const std::string message = UsageFailureOf([&] { OutputFormatOf(name); });
    EXPECT_NE(message.find("one of these was expected: png jpg"), std::string::npos) << message;
  }
  EXPECT_EQ(OutputFormatOf("A.PNG").name, "png");
  EXPECT_EQ(OutputFormatOf("a.b.JPeG").name, "jpeg");
}

TEST_F(OutputFile, APictureTooLargeForItsFormatIsRefused) {
  image_.Reset(8, 4, 65501, 1);
  image_.Clear();
  EXPECT_EQ(WriteFailure("out.jpg", true),
            "out.jpg: cannot write: a picture of this format has at most 65500 pixels a side");
}

TEST_F(OutputFile, FilesAreTheSameFromRunToRun) {
  const auto writeAll = [&] {
    std::map<std::string, std::string> all;
    for (const OutputFormat& format : OutputFormats()) {
      const std::string name = "a." + std::string(format.extensions.substr(0, format.extensions.find(' ')));
      PictureWriter().Write(folder_.path() / name, image_, nullptr, true);
      all[name] = Bytes(folder_.path() / name);
    }
    return all;
  };
  const auto once = writeAll();
  EXPECT_EQ(once.size(), OutputFormats().size());
  const std::vector<char> used(1 << 16, 'x');  // other memory
  // Times in files have seconds.
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  for (const auto& [name, bytes] : writeAll())
    EXPECT_TRUE(bytes == once.at(name)) << name;
  EXPECT_EQ(once.at("a.sgi").substr(20, 492), std::string(492, '\0'));
}

TEST_F(OutputFile, AWriteStopsAmidALargePicture) {
  image_.Reset(8, 4, 2000, 2000);
  image_.Clear();
  for (const char* name : {"out.png", "out.tif", "out.exr", "out.dpx", "out.sgi", "out.tga"}) {
    int asked = 0;
    PictureWriter stopped([&] { return ++asked > 2; });
    EXPECT_THROW(stopped.Write(folder_.path() / name, image_, nullptr, true), FileInterrupted) << name;
    EXPECT_TRUE(NamesIn(folder_.path()).empty()) << name;
  }
}

TEST_F(OutputFile, AStoppedWriteLeavesTheOldFile) {
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
class OutputFileOnAFullDisk : public testing::TestWithParam<const char*> {};

TEST_P(OutputFileOnAFullDisk, LeavesTheOldFileAndSaysSo) {
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
  EXPECT_EQ(message, path.string() + ": cannot write: File too large");
  EXPECT_EQ(Bytes(path), "old");
  EXPECT_EQ(NamesIn(folder.path()).size(), 1u);
}

// Some of a file may be there, and the rest not: what is stored first in the file does not speak for the rest.
TEST_P(OutputFileOnAFullDisk, NoLimitPasses) {
  const ScratchFolder folder;
  const auto path = folder.path() / ("out." + std::string(GetParam()));
  HostImage image;
  image.Reset(8, 4, 61, 47);
  FillRandom(image, 0, 255, 3);
  PictureWriter().Write(path, image, nullptr, true);
  const auto whole = std::filesystem::file_size(path);
  for (std::uintmax_t bytes = 1; bytes < whole; bytes += 1 + whole / 60) {
    const FileSizeLimit limit(bytes);
    const auto failure = CaughtFailure([&] { PictureWriter().Write(path, image, nullptr, true); });
    ASSERT_TRUE(failure) << bytes << " of " << whole;
    EXPECT_EQ(failure->Code(), ExitCode::CannotWrite);
    EXPECT_EQ(std::filesystem::file_size(path), whole);
  }
  EXPECT_EQ(NamesIn(folder.path()).size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Formats, OutputFileOnAFullDisk,
                         testing::Values("png", "jpg", "tif", "exr", "dpx", "webp", "tga", "bmp", "ppm", "sgi", "hdr"),
                         [](const auto& format) { return std::string(format.param); });

}  // namespace
}  // namespace vblur::host
