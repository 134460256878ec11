// Which libraries a run loads: those of the picture library only when needed.
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class StartUp : public ProgramTest {
 protected:
  // The dynamic loader's log of the libraries that a run searches.
  std::string LibrariesOf(std::vector<std::string> arguments, int exit) const {
    const Environment what("LD_DEBUG", "libs");
    const ProcessResult result = Run(std::move(arguments));
    EXPECT_EQ(result.exit, exit) << result.err;
    EXPECT_NE(result.err.find("libvblur_host"), std::string::npos);
    return result.err;
  }

  void ExpectNoPictureLibrary(std::vector<std::string> arguments, int exit) const {
    const std::string libraries = LibrariesOf(arguments, exit);
    for (const char* library :
         {"vblur_host_pictures", "OpenImageIO", "vblur_host_gl", "libEGL", "libfreetype", "libfontconfig"})
      EXPECT_EQ(libraries.find(library), std::string::npos) << library << " for " << arguments[0];
  }
};

TEST_F(StartUp, WhatNeedsNoPictureLoadsNoPictureLibrary) {
  ExpectNoPictureLibrary({"--version"}, 0);
  ExpectNoPictureLibrary({"--help"}, 0);
  ExpectNoPictureLibrary({"render", "--help"}, 0);
  ExpectNoPictureLibrary({"properties"}, 0);
  ExpectNoPictureLibrary({"properties", "Blur", "--size", "12"}, 0);
}

TEST_F(StartUp, NorDoMistakes) {
  MakePicture("in.png");
  folder_.Write("job.json", "{}");
  ExpectNoPictureLibrary({"rendr"}, 2);
  ExpectNoPictureLibrary({"render", "in.png", "out.png", "--blurr", "5"}, 2);
  ExpectNoPictureLibrary({"render", "in.png", "out.xyz"}, 2);
  ExpectNoPictureLibrary({"render", "in.png", "out.png", "--depth", "12"}, 2);
  ExpectNoPictureLibrary({"render", "none.png", "out.png"}, 3);
  ExpectNoPictureLibrary({"render", "in.png", "none/out.png"}, 4);
  ExpectNoPictureLibrary({"job", "job.json"}, 2);
  ExpectNoPictureLibrary({"chart", "out.png", "--depth", "12"}, 2);
}

TEST_F(StartUp, NorDoPlainFiles) {
  MakePicture("in.png");
  for (const std::string extension : {"png", "jpg", "tif", "exr", "dpx"}) {
    ExpectNoPictureLibrary({"chart", "chart." + extension}, 0);
    ExpectNoPictureLibrary({"render", "in.png", "out." + extension, "--blur", "2"}, 0);
    ExpectNoPictureLibrary({"render", "out." + extension, "again." + extension, "--blur", "2"}, 0);
    ExpectNoPictureLibrary({"info", "again." + extension}, 0);
    EXPECT_TRUE(Exists("again." + extension));
  }
  for (const std::string other : {"tif", "exr", "dpx"})
    ExpectNoPictureLibrary({"render", "out." + other, other + "-of.png", "--blur", "2"}, 0);
}

TEST_F(StartUp, TheLibraryOfPicturesIsAChoice) {
  MakePicture("in.png");
  ExpectRefusal(
      {"render", "in.png", "out.tga", "--pictures", "light"}, 4,
      "out.tga: cannot write: the light picture library writes plain PNG, JPEG, TIFF, EXR and DPX files alone");
  EXPECT_FALSE(Exists("out.tga"));
  EXPECT_EQ(Run({"render", "in.png", "light.png", "--pictures", "light"}).exit, 0);
  EXPECT_EQ(Run({"render", "in.png", "full.png", "--pictures", "full"}).exit, 0);
  EXPECT_EQ(Pixels("light.png"), Pixels("full.png"));
}

// A positive control for the tests above.
TEST_F(StartUp, OtherPicturesLoadIt) {
  MakePicture("in.png");
  for (const std::string& libraries :
       {LibrariesOf({"render", "in.png", "out.tga"}, 0), LibrariesOf({"chart", "chart.tga"}, 0),
        LibrariesOf({"render", "in.png", "out.png", "--pictures", "full"}, 0)}) {
    EXPECT_NE(libraries.find("OpenImageIO"), std::string::npos);
    EXPECT_EQ(libraries.find("vblur_host_gl"), std::string::npos) << "that is for the viewer";
    EXPECT_EQ(libraries.find("libEGL"), std::string::npos);
  }
  EXPECT_TRUE(Exists("out.png"));
}

TEST_F(StartUp, APictureLibraryThatCannotBeLoadedIsNamed) {
  const std::filesystem::path host = VBLUR_HOST;
  const auto copies = std::filesystem::canonical(folder_.path());
  std::filesystem::copy_file(host, copies / host.filename());
  const Environment first("LD_LIBRARY_PATH", copies.string());
  ExpectRefusal(
      {"chart", "chart.png"}, 3,
      (copies / "libvblur_host_light_png.so").string() + ": cannot load the light picture library: no such file");
  const std::string module = (copies / "libvblur_host_pictures.so").string();
  ExpectRefusal({"chart", "chart.png", "--pictures", "full"}, 3,
                module + ": cannot load the picture library: no such file");
  folder_.Write("libvblur_host_pictures.so", "no library");
  ExpectRefusal({"chart", "chart.png", "--pictures", "full"}, 3,
                module + ": cannot load the picture library: " + module + ": file too short");
}

}  // namespace
}  // namespace vblur::cli
