// What is told of values that are clipped, which EXR files alone hold.
#include <sstream>

#include <nlohmann/json.hpp>

#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class ReadingPicturesOfLight : public ProgramTest {
 protected:
  // Values of up to 1.5.
  void MakeBright(const std::string& name) const {
    host::HostImage image;
    image.Reset(16, 4, 4, 2);
    for (std::size_t i = 0; i < host::ComponentCount(image); ++i)
      host::SetComponent(image, i, i == 4 ? 24576 : 8192);
    host::PictureWriter().Write(Path(name), image, nullptr, true);
  }

  static constexpr const char* kLost = ": 1 component from 1.5 to 1.5 clipped to 0 to 1, which 8 bits carry";
};

TEST_F(ReadingPicturesOfLight, AFrameThatClipsIsTold) {
  MakeBright("in.1.exr");
  MakeBright("in.2.exr");
  const std::vector<std::string> render{"render", "in.%d.exr", "out.%d.exr", "--frames", "1-2", "--depth", "8"};
  // What is lost of every frame is told once.
  const std::string depth =
      "vblur: output: lost: last bits of float samples (8 bits are rendered) (first in out.1.exr)\n";
  EXPECT_EQ(Run(render).err, "vblur: in.1.exr" + std::string(kLost) + "\n" + depth + "vblur: in.2.exr" + kLost + "\n");
  auto quiet = render;
  quiet.insert(quiet.end(), {"--overwrite", "-q"});
  EXPECT_EQ(Run(quiet).err, "");
  auto json = render;
  json.insert(json.end(), {"--overwrite", "--progress", "json"});
  std::istringstream lines(Run(json).err);
  std::vector<nlohmann::json> warnings;
  for (std::string line; std::getline(lines, line);) {
    const auto event = nlohmann::json::parse(line);
    if (event["event"] == "warning") warnings.push_back(event);
  }
  ASSERT_EQ(warnings.size(), 3u);
  EXPECT_EQ(warnings[2]["frame"], 2);
  EXPECT_EQ(warnings[2]["message"], "in.2.exr" + std::string(kLost));
}

TEST_F(ReadingPicturesOfLight, EachOfSeveralPicturesIsNamed) {
  MakeBright("a.exr");
  MakeBright("b.exr");
  std::filesystem::create_directory(Path("out"));
  const std::string lost = ": lost: last bits of float samples (8 bits are rendered)\n";
  const std::string err = Run({"render", "a.exr", "b.exr", "out", "--depth", "8"}).err;
  for (const char* name : {"a", "b"})
    EXPECT_NE(err.find("vblur: out/" + std::string(name) + ".exr" + lost), std::string::npos) << err;
  EXPECT_NE(Run({"a.exr", "c.exr", "--depth", "8"}).err.find("vblur: output" + lost), std::string::npos);
}

// Each frame by its own number of components, in the style of those that are lost when they are read.
TEST_F(ReadingPicturesOfLight, AFrameThatClipsWhenItIsWrittenIsToldToo) {
  MakeBright("in.1.exr");
  MakeBright("in.2.exr");
  const std::vector<std::string> render{"render", "in.%d.exr", "out.%d.png", "--frames", "1-2", "--blur", "0"};
  const std::string clipped = ": 1 component from 1.5 to 1.5 clipped to 0 to 1, which uint16 samples hold";
  EXPECT_EQ(
      Run(render).err,
      "vblur: output: lost: last bits of float samples (uint16 are written) (first in out.1.png)\nvblur: out.1.png" +
          clipped + "\nvblur: out.2.png" + clipped + "\n");
  auto json = render;
  json.insert(json.end(), {"--overwrite", "--progress", "json"});
  const std::string lines = Run(json).err;
  EXPECT_NE(lines.find(R"({"event":"warning","frame":2,"message":"out.2.png)" + clipped + "\"}\n"), std::string::npos)
      << lines;
}

TEST_F(ReadingPicturesOfLight, AViewTellsItToo) {
  MakeBright("in.exr");
  MakeBright("second.exr");
  folder_.Write("job.json", R"({"input": {"file": "in.exr"}, "input2": {"file": "second.exr"}, "depth": 8,
                                "frames": [1, 2], "output": {"file": "out.%d.png"}})");
  const auto result = Run({"view", "job.json", "view.png"});
  EXPECT_EQ(result.exit, 0);
  EXPECT_EQ(result.err, "vblur: in.exr" + std::string(kLost) + "\nvblur: second.exr" + kLost + "\n");
}

TEST_F(ReadingPicturesOfLight, APictureThatServesEveryFrameIsToldOnce) {
  MakeBright("mask.exr");
  MakeBright("second.exr");
  MakePicture("in.1.png", 4, 2);
  MakePicture("in.2.png", 4, 2);
  EXPECT_EQ(Run({"render", "in.%d.png", "out.%d.png", "--frames", "1-2", "--to", "second.exr"}).err,
            "vblur: second.exr" + std::string(kLost) + "\n");
}

TEST_F(ReadingPicturesOfLight, ASheetTellsItToo) {
  MakeBright("in.exr");
  EXPECT_EQ(Run({"sheet", "in.exr", "sheet.png", "--of", "channels", "--depth", "8"}).err,
            "vblur: in.exr" + std::string(kLost) + "\n");
}

}  // namespace
}  // namespace vblur::cli
