// Names that the code page lacks, long names, devices, and files that are open elsewhere.
#include <nlohmann/json.hpp>

#include "host/base/LongPath.h"
#include "host/base/Utf8.h"
#include "tests/apps/ProgramTest.h"

#include <windows.h>

namespace vblur::cli {
namespace {

class FileNames : public ProgramTest {
 protected:
  FileNames() { MakePicture("in.png"); }

  void Copy(const std::string& to) const {
    const auto target = host::ExtendedPath(folder_.path() / host::PathOf(to));
    std::filesystem::create_directories(target.parent_path());
    ASSERT_NE(CopyFileW(Path("in.png").c_str(), target.c_str(), TRUE), 0);
  }
  std::vector<std::int32_t> PixelsOf(const std::string& name) const {
    host::HostImage image;
    host::PictureReader().ReadColour(folder_.path() / host::PathOf(name), 8, image);
    return host::Components(image);
  }
};

// Letters of several code pages, and one of two units.
constexpr const char* kName = "плата \xC3\xA4 漢字 \xF0\x9F\x8C\x8A";

TEST_F(FileNames, AreThoseOfEveryLanguage) {
  const std::string name = kName;
  const std::string input = name + "/in.png";
  const std::string output = name + "/" + name + ".png";
  Copy(input);
  const auto result = Run({"render", input, output, "--blur", "0", "--progress", "json"});
  EXPECT_EQ(result.exit, 0) << result.err;
  EXPECT_NE(result.err.find('"' + output + '"'), std::string::npos) << result.err;
  EXPECT_EQ(PixelsOf(output), Pixels("in.png"));
  const auto info = Run({"info", output, "--to", "png"});
  EXPECT_TRUE(info.out.starts_with(output + ": png, 40 x 30 pixels\n")) << info.out;
  EXPECT_EQ(Run({"render", input, name + ".png", "--blur", "2", "--save-job", name + ".json"}).exit, 0);
  EXPECT_EQ(Run({"job", name + ".json", "--overwrite"}).exit, 0);
  const auto refuse = Run({"render", name + "0.png", "out.png"});
  EXPECT_EQ(refuse.exit, 3);
  EXPECT_EQ(refuse.err, "vblur: " + name + "0.png: cannot read: no such file\n");
  const auto word = Run({"render", "in.png", "out.png", "--blur", name});
  EXPECT_EQ(word.exit, 2);
  EXPECT_NE(word.err.find("found \"" + name + "\"\n"), std::string::npos) << word.err;
}

TEST_F(FileNames, MayHaveMoreThan260Characters) {
  std::string deep;
  for (int i = 0; i < 4; ++i)
    deep += std::string(90, static_cast<char>('a' + i)) + "/";
  Copy(deep + "in.0001.png");
  for (const std::string& folder : {deep, host::Utf8Of(folder_.path()) + "/" + deep}) {
    const auto result = Run({"render", folder + "in.%04d.png", folder + "out.%04d.png", "--frames", "1", "--blur", "0",
                             "--save-job", folder + "job.json", "--overwrite"});
    EXPECT_EQ(result.exit, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(PixelsOf(deep + "out.0001.png"), Pixels("in.png"));
    EXPECT_EQ(Run({"job", folder + "job.json", "--skip-existing"}).exit, 0);
  }
  const auto missing = Run({"render", deep + "none.png", "out.png"});
  EXPECT_EQ(missing.exit, 3);
  // They are shown from the drive on.
  const std::string full = host::Utf8Of((folder_.path() / deep).make_preferred());
  EXPECT_EQ(missing.err, "vblur: " + full + "none.png: cannot read: no such file\n");
  const auto exists = Run({"render", "in.png", deep + "out.0001.png"});
  EXPECT_EQ(exists.exit, 4);
  EXPECT_TRUE(exists.err.starts_with("vblur: " + full + "out.0001.png: cannot write: the file exists already"))
      << exists.err;
  std::error_code ignored;
  std::filesystem::remove_all(host::ExtendedPath(folder_.path() / std::string(90, 'a')), ignored);
}

TEST_F(FileNames, TakeBackslashesSpacesAndQuotationMarks) {
  Copy("a b/c d.png");
  EXPECT_EQ(Run({"render", "a b\\c d.png", "a b\\e.png", "--blur", "0"}).exit, 0);
  EXPECT_EQ(PixelsOf("a b/e.png"), Pixels("in.png"));
  std::filesystem::create_directory(Path("to here"));
  EXPECT_EQ(Run({"render", "in.png", "to here\\", "--blur", "0"}).exit, 0);
  EXPECT_TRUE(Exists("to here\\in.png"));
  const auto word = Run({"render", "in.png", "out.png", "--blur", "a \"b\\\""});
  EXPECT_EQ(word.exit, 2);
  EXPECT_NE(word.err.find(R"("a \"b\\"")"), std::string::npos) << word.err;
}

TEST_F(FileNames, OfOneFileAreAlikeInAnyCase) {
  ExpectRefusal({"sheet", "in.png", "IN.PNG", "--of", "sizes", "--overwrite"}, 2,
                "OUTPUT: expected another name, \"IN.PNG\" is read by this run");
  ExpectRefusal({"render", "in.png", "out.png", "--save-job", "In.png", "--overwrite"}, 2,
                "--save-job: expected another name, \"In.png\" is read by this run");
}

TEST_F(FileNames, OfDevicesAndStreamsAreRefused) {
  for (const char* name : {"nul", "NUL", "con"}) {
    ExpectRefusal({"render", "in.png", name, "--format", "png"}, 4,
                  std::string(name) + ": cannot write: it is a device, a file name was expected");
  }
  for (const char* name : {"out:1.png", "a?.png", "a|b.png", "<a>.png"}) {
    ExpectRefusal({"render", "in.png", "-o", name}, 4,
                  std::string(name) + R"(: cannot write: a file name holds none of < > : " | ? *)");
  }
}

TEST_F(FileNames, OfDevicesAndFoldersOfDrivesAreNoInputs) {
  for (const char* name : {"CON", "nul"}) {
    const std::string device = std::string(name) + ": cannot read: it is a device, a file name was expected";
    ExpectRefusal({"render", name, "out.png"}, 3, device);
    ExpectRefusal({name, "out.png"}, 3, device);
    ExpectRefusal({"in.png", name}, 4, std::string(name) + ": cannot write: it is a device, a file name was expected");
    ExpectRefusal({"job", name}, 3,
                  std::string(name) + ": cannot read the job file: it is a device, a file name was expected");
  }
  const std::string drive =
      "it lies in whatever folder is the current one of drive C:, expected C:\\ and the folders, "
      "or no drive";
  ExpectRefusal({"render", "C:in.png", "out.png"}, 3, "C:in.png: cannot read: " + drive);
}

class OpenFile {
 public:
  explicit OpenFile(const std::filesystem::path& file)
      : handle_(CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr)) {}
  ~OpenFile() { CloseHandle(handle_); }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

 private:
  HANDLE handle_;
};

TEST_F(FileNames, OfFilesThatAreOpenElsewhereAreRefused) {
  const auto old = folder_.Write("out.png", "old");
  {
    const OpenFile open(old);
    ExpectRefusal({"render", "in.png", "out.png", "--overwrite"}, 4,
                  "out.png: cannot write: another program has it open");
  }
  EXPECT_EQ(host::Bytes(old), "old");
  {
    const OpenFile open(Path("in.png"));
    ExpectRefusal({"render", "in.png", "new.png"}, 3, "in.png: cannot read: another program has it open");
  }
  SetFileAttributesW(old.c_str(), FILE_ATTRIBUTE_READONLY);
  ExpectRefusal({"render", "in.png", "out.png", "--overwrite"}, 4, "out.png: cannot write: the file is read-only");
  SetFileAttributesW(old.c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(host::Bytes(old), "old");
}

}  // namespace
}  // namespace vblur::cli
