// Files that others hold, and names that mean something to Windows.
#include <atomic>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "host/base/LongPath.h"
#include "host/base/SystemFiles.h"
#include "host/base/Utf8.h"
#include "tests/host/files/OutputFileTest.h"

#include <windows.h>

namespace vblur::host {
namespace {

// As a program holds a picture that it shows.
class HeldFile {
 public:
  explicit HeldFile(const std::filesystem::path& path)
      : file_(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr)) {
    EXPECT_NE(file_, INVALID_HANDLE_VALUE);
  }
  ~HeldFile() { CloseHandle(file_); }
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;

 private:
  HANDLE file_;
};

// If it is there: not every system replaces a file in one step.
void HoldForAMoment(const std::filesystem::path& path) {
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  Sleep(2);
  CloseHandle(file);
}

TEST_F(OutputFile, AFileThatAnotherProgramHoldsStays) {
  const auto path = folder_.Write("out.png", "old");
  {
    const HeldFile held(path);
    EXPECT_EQ(WriteFailure(path, true), path.string() + ": cannot write: another program has it open");
  }
  EXPECT_EQ(Bytes(path), "old");
  EXPECT_EQ(NamesIn(folder_.path()), std::set<std::string>{"out.png"});
}

TEST_F(OutputFile, AFileThatAnotherProgramHoldsForAMomentIsReplaced) {
  const auto path = folder_.Write("out.png", "old");
  auto held = std::make_unique<HeldFile>(path);
  const std::jthread closing([&] {
    Sleep(150);
    held.reset();
  });
  PictureWriter().Write(path, image_, nullptr, true);
  EXPECT_EQ(ReadPictureInfo(path).width, 40);
  EXPECT_EQ(NamesIn(folder_.path()), std::set<std::string>{"out.png"});
}

// Two runs that write one file, and a program that looks at it again and again.
TEST_F(OutputFile, SeveralWriteOneNameAtOnce) {
  const auto path = folder_.path() / "out.png";
  PictureWriter().Write(path, image_, nullptr, false);
  std::atomic<bool> isOver = false;
  std::thread looking([&] {
    while (!isOver) {
      HoldForAMoment(path);
      Sleep(4);
    }
  });
  std::atomic<int> failed = 0;
  std::vector<std::thread> writing;
  for (int i = 0; i < 2; ++i) {
    writing.emplace_back([&] {
      try {
        for (int times = 0; times < 25; ++times)
          PictureWriter().Write(path, image_, nullptr, true);
      } catch (const Failure& failure) {
        ++failed;
        ADD_FAILURE() << failure.what();
      }
    });
  }
  for (std::thread& each : writing)
    each.join();
  isOver = true;
  looking.join();
  EXPECT_EQ(failed, 0);
  EXPECT_EQ(NamesIn(folder_.path()), std::set<std::string>{"out.png"});
}

class OutputFileOnAFullDisk : public testing::TestWithParam<const char*> {};

TEST_P(OutputFileOnAFullDisk, LeavesTheOldFileAndSaysSo) {
  if (std::getenv("VBLUR_FILES_ARE_LIMITED") == nullptr) GTEST_SKIP() << "limited_files.sh limits the size of files";
  const ScratchFolder folder;
  const auto path = folder.Write("out." + std::string(GetParam()), "old");
  HostImage image;
  image.Reset(16, 4, 300, 300);
  FillRandom(image, 0, 16384, 2);
  const auto failure = CaughtFailure([&] { PictureWriter().Write(path, image, nullptr, true); });
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->Code(), ExitCode::CannotWrite);
  EXPECT_EQ(std::string(failure->what()).find(path.string() + ": cannot write: "), 0u) << failure->what();
  EXPECT_EQ(Bytes(path), "old");
  EXPECT_EQ(NamesIn(folder.path()).size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Formats, OutputFileOnAFullDisk, testing::Values("png", "jpg", "tif", "bmp"),
                         [](const auto& format) { return std::string(format.param); });

TEST_F(OutputFile, NamesOfDevicesStreamsAndDrivesAreRefused) {
  for (const char* name : {"nul", "NUL.png", "con.png", "Com1.png", "lpt9.tif", "aux.png", "prn.png"}) {
    const auto path = folder_.path() / name;
    const OutputOptions options{.overwrite = true, .storage = {.format = "png"}};
    const auto failure = CaughtFailure([&] { PictureWriter().WriteBeside(path, image_, nullptr, options).Commit(); });
    EXPECT_EQ(failure->what(), path.string() + ": cannot write: it is a device, a file name was expected");
  }
  EXPECT_EQ(WriteFailure("C:out.png", true),
            "C:out.png: cannot write: it lies in whatever folder is the current one of drive C:, expected C:\\ and the "
            "folders, or no drive");
  EXPECT_NE(WriteFailure(folder_.path() / "shot:1.png", true).find("holds none of"), std::string::npos);
  const OutputOptions asPng{.storage = {.format = "png"}};
  const auto dotted =
      CaughtFailure([&] { PictureWriter().WriteBeside(folder_.path() / "out.", image_, nullptr, asPng).Commit(); });
  EXPECT_EQ(dotted->what(), (folder_.path() / "out.").string() +
                                ": cannot write: the name of a file or folder ends in no dot and no blank");
  EXPECT_TRUE(NamesIn(folder_.path()).empty());
}

TEST_F(OutputFile, AnyNameOfAFileIsTheFile) {
  const auto path = folder_.Write("Out.png", "old");
  EXPECT_EQ(WriteFailure(folder_.path() / "OUT.PNG", false),
            (folder_.path() / "OUT.PNG").string() + ": cannot write: the file exists already");
  PictureWriter().Write("\\\\?\\" + path.string(), image_, nullptr, true);
  EXPECT_EQ(ReadPictureInfo(path).width, 40);
  EXPECT_EQ(NamesIn(folder_.path()).size(), 1u);
}

TEST_F(OutputFile, LongPathsAreReplacedAndCleaned) {
  std::filesystem::path folder = folder_.path();
  for (int i = 0; i < 4; ++i) {
    folder /= std::string(100, 'a');
    std::filesystem::create_directory(ExtendedPath(folder));
  }
  const auto path = PathOf(Utf8Of(folder / "\u00e4.png"));
  for (const bool overwrite : {false, true})
    PictureWriter().Write(path, image_, nullptr, overwrite);
  EXPECT_EQ(WriteFailure(path, false), Utf8Of(path) + ": cannot write: the file exists already");
  EXPECT_EQ(Utf8Of(path).find('?'), std::string::npos);
  PictureWriter stopped([] { return true; });
  EXPECT_THROW(stopped.Write(path, image_, nullptr, true), FileInterrupted);
  EXPECT_EQ(EntriesOf(folder), std::vector{path.filename()});
  EXPECT_EQ(ReadPictureInfo(path).width, 40);
  std::filesystem::remove(path);
  for (; folder != folder_.path(); folder = folder.parent_path())
    std::filesystem::remove(ExtendedPath(folder));
}

TEST_F(OutputFile, AHiddenFileStaysHidden) {
  const auto path = folder_.Write("out.png", "old");
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN);
  PictureWriter().Write(path, image_, nullptr, true);
  EXPECT_NE(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0u);
  EXPECT_EQ(ReadPictureInfo(path).width, 40);
}

}  // namespace
}  // namespace vblur::host
