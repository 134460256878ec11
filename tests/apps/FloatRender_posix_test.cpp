// Renders in 32-bit floats: which pictures are, and what is told of values that floats do not carry.
#include <cmath>
#include <limits>
#include <sstream>

#include <nlohmann/json.hpp>

#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class FloatRender : public ProgramTest {
 protected:
  static constexpr const char* kTold =
      "vblur: input: 4 components from -inf to 70000 clipped to -65504 to 65504, which 32 bits carry; 2 components "
      "without a value (NaN) read as 0\n";

  void MakeFloats(const std::string& name, const std::vector<float>& components,
                  host::SampleType type = host::SampleType::Float) const {
    host::HostImage image;
    image.Reset(32, 4, static_cast<std::int32_t>(components.size()) / 4, 1);
    host::SetFloats(image, components);
    host::OutputOptions options{.overwrite = true};
    options.storage.type = type;
    host::PictureWriter().WriteBeside(Path(name), image, nullptr, options).Commit();
  }

  // Two frames, each with one NaN and two values that are too large.
  void MakeBadSequence() const {
    const float infinity = std::numeric_limits<float>::infinity();
    MakeFloats("in.1.exr", {std::nanf(""), 7e4f, -infinity, 1.0f, 0.5f, 0.5f, 0.5f, 1.0f});
    MakeFloats("in.2.exr", {0.5f, 7e4f, -infinity, 1.0f, 0.5f, std::nanf(""), 0.5f, 1.0f});
  }

  std::vector<float> FloatsOf(const std::string& name) const {
    host::HostImage image;
    host::PictureReader().ReadColour(Path(name), 32, image);
    return host::Floats(image);
  }

  std::string DepthOf(const std::string& name) const {
    return std::to_string(nlohmann::json::parse(Run({"info", name, "--json"}).out)["depth"].get<int>());
  }
};

TEST_F(FloatRender, HalvesAndFloatsAreRenderedInThem) {
  const std::vector<float> light{900.0f, -2.0f, 1.0f / 1024, 1.0f, 0.25f, 3.0f, 0.125f, 0.5f};
  for (const host::SampleType type : {host::SampleType::Half, host::SampleType::Float}) {
    MakeFloats("in.exr", light, type);
    EXPECT_EQ(DepthOf("in.exr"), "32");
    const auto result = Run({"in.exr", "out.exr", "--blur", "0", "--overwrite"});
    EXPECT_EQ(result.exit, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(FloatsOf("out.exr"), light);
  }
  EXPECT_EQ(Run({"in.exr", "out.exr", "--blur", "0", "--depth", "16", "--overwrite"}).exit, 0);
  EXPECT_LT(FloatsOf("out.exr")[0], 2.0f);
}

TEST_F(FloatRender, OtherPicturesAreOnRequest) {
  MakePicture("in.png");
  EXPECT_EQ(DepthOf("in.png"), "8");
  MakePicture("deep.png", 20, 10, 16);
  EXPECT_EQ(DepthOf("deep.png"), "16");
  for (const std::string name : {"in.png", "deep.png"}) {
    EXPECT_EQ(Run({name, "out.png", "--blur", "0", "--depth", "32", "--overwrite"}).err, "");
    EXPECT_EQ(FloatsOf("out.png"), FloatsOf(name));
  }
}

TEST_F(FloatRender, WhatFloatsDoNotCarryIsToldOnceInARun) {
  MakeBadSequence();
  const std::vector<std::string> render{"in.%d.exr", "out.%d.exr", "--frames", "1-2", "--blur", "0"};
  const auto result = Run(render);
  EXPECT_EQ(result.exit, 0);
  EXPECT_EQ(result.err, kTold);
  EXPECT_EQ(FloatsOf("out.1.exr"), (std::vector<float>{0.0f, 65504.0f, -65504.0f, 1.0f, 0.5f, 0.5f, 0.5f, 1.0f}));
  auto quiet = render;
  quiet.insert(quiet.end(), {"--overwrite", "-q"});
  EXPECT_EQ(Run(quiet).err, "");
  auto json = render;
  json.insert(json.end(), {"--overwrite", "--progress", "json"});
  std::istringstream lines(Run(json).err);
  nlohmann::json last;
  for (std::string line; std::getline(lines, line);) {
    last = nlohmann::json::parse(line);
    EXPECT_NE(last["event"], "warning") << line;
  }
  EXPECT_EQ(last["limited"], 4);
  EXPECT_EQ(last["notNumbers"], 2);
}

// A mask without a number is read once.
TEST_F(FloatRender, APictureThatServesAllFramesCountsOnce) {
  MakeFloats("in.1.exr", std::vector<float>(8, 0.5f));
  MakeFloats("in.2.exr", std::vector<float>(8, 0.5f));
  MakeFloats("mask.exr", {std::nanf(""), 0.0f, 0.0f, 1.0f, 0.5f, 0.0f, 0.0f, 1.0f});
  EXPECT_EQ(Run({"in.%d.exr", "out.%d.exr", "--frames", "1-2", "--mask", "mask.exr", "--blur", "2"}).err,
            "vblur: input: 1 component without a value (NaN) read as 0\n");
}

TEST_F(FloatRender, LargeBlursLoseNothingThatIsTold) {
  MakeFloats("in.exr", std::vector<float>(8, 0.5f));
  EXPECT_NE(Run({"in.exr", "out.exr", "--blur", "200", "--depth", "16"}).err.find("flat areas"), std::string::npos);
  EXPECT_EQ(Run({"in.exr", "out.exr", "--blur", "200", "--overwrite"}).err, "");
  EXPECT_EQ(FloatsOf("out.exr"), std::vector<float>(8, 0.5f));
}

TEST_F(FloatRender, ChartsAreDrawnInThem) {
  EXPECT_EQ(Run({"chart", "chart.exr", "--depth", "32", "--size", "64x36"}).exit, 0);
  const auto floats = FloatsOf("chart.exr");
  EXPECT_TRUE(
      std::ranges::any_of(floats, [](float value) { return value * 16384.0f != std::floor(value * 16384.0f); }));
  EXPECT_EQ(host::ReadPictureInfo(Path("chart.exr")).NaturalDepth(), 32);
}

TEST_F(FloatRender, ASheetTellsWhatItDoesNotCarry) {
  MakeFloats("in.exr", {std::nanf(""), 0.5f, 0.5f, 1.0f, 0.5f, 0.5f, 0.5f, 1.0f});
  EXPECT_EQ(Run({"sheet", "in.exr", "sheet.png", "--of", "edges"}).err,
            "vblur: in.exr: 1 component without a value (NaN) read as 0\n");
}

TEST_F(FloatRender, AJobMayAskForThem) {
  MakePicture("in.png");
  folder_.Write("job.json",
                R"({"depth": 32, "input": {"file": "in.png"}, "output": {"file": "out.exr", "type": "float"},
                                "properties": {"Blur": 9}})");
  EXPECT_EQ(Run({"job", "job.json"}).exit, 0);
  EXPECT_EQ(
      Run({"in.png", "other.exr", "--depth", "32", "--type", "float", "--blur", "9", "--save-job", "saved.json"}).exit,
      0);
  EXPECT_EQ(FloatsOf("out.exr"), FloatsOf("other.exr"));
  EXPECT_NE(host::Bytes(Path("saved.json")).find("\"depth\": 32"), std::string::npos);
}

}  // namespace
}  // namespace vblur::cli
