// The order in which a file reaches its disk and takes its name. The system's calls are watched on their way.
#include <filesystem>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "host/base/TextFile.h"
#include "host/files/OutputFile.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace {

// What was called, with the names that files have now; nothing while null.
std::vector<std::string>* calls = nullptr;
int syncError = 0;

std::string NameOf(int file) {
  std::error_code error;
  const auto path = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file), error);
  const bool isPart = path.filename().string().find(".part") != std::string::npos;
  return isPart ? "part" : std::filesystem::is_directory(path, error) ? "folder" : path.filename().string();
}

}  // namespace

extern "C" int fsync(int file) {
  if (calls != nullptr) calls->push_back("sync " + NameOf(file));
  if (syncError != 0) {
    errno = syncError;
    return -1;
  }
  return static_cast<int>(::syscall(SYS_fsync, file));
}

extern "C" int rename(const char* from, const char* to) {
  if (calls != nullptr) calls->push_back("rename to " + std::filesystem::path(to).filename().string());
  return static_cast<int>(::syscall(SYS_renameat, AT_FDCWD, from, AT_FDCWD, to));
}

namespace vblur::host {
namespace {

class OutputSync : public testing::Test {
 protected:
  OutputSync() {
    image_.Reset(8, 4, 4, 3);
    image_.Clear();
    calls = &calls_;
  }
  ~OutputSync() override {
    calls = nullptr;
    syncError = 0;
  }

  ScratchFolder folder_;
  HostImage image_;
  std::vector<std::string> calls_;
};

using Calls = std::vector<std::string>;

TEST_F(OutputSync, AFileIsOnItsDiskBeforeItTakesItsNameAndTheNameAfterThat) {
  for (const char* extension : {"png", "jpg", "tif", "exr", "dpx", "webp", "tga", "bmp", "ppm", "sgi", "hdr"}) {
    calls_.clear();
    const std::string name = "out." + std::string(extension);
    PictureWriter().Write(folder_.path() / name, image_, nullptr, false);
    EXPECT_EQ(calls_, (Calls{"sync part", "rename to " + name, "sync folder"}));
  }
  calls_.clear();
  WriteTextBeside("{}", folder_.path() / "job.json", "job file")->Commit();
  EXPECT_EQ(calls_, (Calls{"sync part", "rename to job.json", "sync folder"}));
}

TEST_F(OutputSync, WithoutItAFileJustTakesItsName) {
  const OutputOptions options{false, false, {}};
  PictureWriter().WriteBeside(folder_.path() / "out.png", image_, nullptr, options).Commit();
  EXPECT_EQ(calls_, Calls{"rename to out.png"});
}

TEST_F(OutputSync, ADiskThatFailsIsToldAndLeavesTheOldFile) {
  const auto path = folder_.Write("out.png", "old");
  syncError = EIO;
  const auto failure = CaughtFailure([&] { PictureWriter().Write(path, image_, nullptr, true); });
  EXPECT_EQ(failure->what(), path.string() + ": cannot write: Input/output error");
  EXPECT_EQ(failure->Code(), ExitCode::CannotWrite);
  EXPECT_EQ(Bytes(path), "old");
  EXPECT_EQ(NamesIn(folder_.path()), std::set<std::string>{"out.png"});
  // A file system that knows no sync.
  syncError = EINVAL;
  PictureWriter().Write(path, image_, nullptr, true);
  EXPECT_EQ(ReadPictureInfo(path).width, 4);
}

}  // namespace
}  // namespace vblur::host
