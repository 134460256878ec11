#include <chrono>
#include <map>
#include <thread>

#include <gtest/gtest.h>

#include "tests/host/files/OutputFileTest.h"
#include "tests/support/host/HeldFormats.h"

namespace vblur::host {
namespace {

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
  std::filesystem::permissions(path, owner_read | owner_write);
}

TEST_F(OutputFile, PlacesThatHoldNoFileAreRefused) {
  const auto missing = folder_.path() / "no";
  EXPECT_EQ(WriteFailure(missing / "out.png", true),
            (missing / "out.png").string() + ": cannot write: the folder " + missing.string() + " does not exist");
  std::filesystem::create_directory(folder_.path() / "dir.png");
  EXPECT_NE(WriteFailure(folder_.path() / "dir.png", true).find("it is a folder"), std::string::npos);
  EXPECT_EQ(NamesIn(folder_.path()), std::set<std::string>{"dir.png"});
}

TEST_F(OutputFile, AnUnknownExtensionIsRefusedWithTheKnownOnes) {
  for (const char* name : {"a.xyz", "a", "png", ".png", "a.png.bak"}) {
    const std::string message = UsageFailureOf([&] { OutputFormatOf(name); });
    EXPECT_NE(message.find("one of these was expected: png "), std::string::npos) << message;
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
}

TEST_F(OutputFile, AWriteStopsAmidALargePicture) {
  image_.Reset(8, 4, 2000, 2000);
  image_.Clear();
  for (const char* extension : HeldFormats({"png", "tif", "exr", "dpx", "sgi", "tga", "jpg", "bmp"})) {
    const std::string name = std::string("out.") + extension;
    int asked = 0;
    PictureWriter stopped([&] { return ++asked > 2; });
    EXPECT_THROW(stopped.Write(folder_.path() / name, image_, nullptr, true), FileInterrupted) << name;
    EXPECT_TRUE(NamesIn(folder_.path()).empty()) << name;
  }
}

TEST_F(OutputFile, AStoppedWriteLeavesTheOldFile) {
  const auto path = folder_.Write("out.png", "old");
  PictureWriter stopped([] { return true; });
  EXPECT_THROW(stopped.Write(path, image_, nullptr, true), FileInterrupted);
  EXPECT_EQ(Bytes(path), "old");
  EXPECT_EQ(NamesIn(folder_.path()), std::set<std::string>{"out.png"});
}

}  // namespace
}  // namespace vblur::host
