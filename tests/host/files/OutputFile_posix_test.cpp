// Links, permissions, processes and full disks.
#include <csignal>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "host/base/PartFiles.h"
#include "tests/host/files/OutputFileTest.h"

namespace vblur::host {
namespace {

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

TEST_F(OutputFile, ADeviceIsRefused) {
  std::filesystem::create_symlink("/dev/full", folder_.path() / "full.png");
  EXPECT_NE(WriteFailure(folder_.path() / "full.png", true).find("not a regular file; - writes a picture into a pipe"),
            std::string::npos);
  EXPECT_EQ(NamesIn(folder_.path()), std::set<std::string>{"full.png"});
}

TEST_F(OutputFile, WhatAHeaderLeavesOpenIsZero) {
  PictureWriter().Write(folder_.path() / "a.sgi", image_, nullptr, false);
  EXPECT_EQ(Bytes(folder_.path() / "a.sgi").substr(20, 492), std::string(492, '\0'));
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
